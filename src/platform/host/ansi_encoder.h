#pragma once

#include <iconv.h>
#include <string>
#include <string_view>

namespace velmora::host {

/// Texts as the bytes of a code page. Not for use by several threads at once.
class AnsiEncoder {
 public:
  /// `codePage`: a number as Windows counts them, such as 936, or a name that iconv knows.
  /// Raises kInvalidArgument naming an unknown one.
  explicit AnsiEncoder(const std::string& codePage);
  ~AnsiEncoder();
  AnsiEncoder(const AnsiEncoder&) = delete;
  AnsiEncoder& operator=(const AnsiEncoder&) = delete;

  /// UTF-8 `text` in the code page; a character that it lacks becomes "?", and so does
  /// what is no UTF-8.
  std::string encoded(std::string_view text);

  /// The code page of ANSI text files: VELMORA_CODE_PAGE in the environment, else the
  /// registry's setting "CodePage", else 936, simplified Chinese.
  static std::string configured();

 private:
  iconv_t converter_;
};

}  // namespace velmora::host
