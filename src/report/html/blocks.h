#pragma once

#include "report/html/markup.h"
#include "report/words.h"

namespace velmora::report::html {

/// What every part of a page is written with.
struct Page {
  Markup& markup;
  const Words& words;

  /// A word of the page, in the reader's language.
  void word(std::string_view chinese) const { markup.text(words(chinese)); }
};

/// Class of the elements of a tone: "s", "w", "g"; empty for a plain one.
std::string_view classOf(Tone tone);
/// A tone's word for whoever does not see its sign, in simplified Chinese.
std::string_view wordOf(Tone tone);
/// The sign of a tone, and the word for it for whoever hears the page. Nothing for a plain one.
void writeSign(const Page& page, Tone tone);
void writeLink(const Page& page, const Reference& reference);
void writeCell(const Page& page, const Cell& cell);

/// One block of a section; tables are in tables.h.
void write(const Page& page, const Paragraph& paragraph);
void write(const Page& page, const Facts& facts);
void write(const Page& page, const Steps& steps);
void write(const Page& page, const Chart& chart);
void write(const Page& page, const Signatures& signatures);

}  // namespace velmora::report::html
