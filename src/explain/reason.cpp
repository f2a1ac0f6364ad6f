#include "explain/reason.h"

#include <array>

namespace velmora::explain {

namespace {

struct Name {
  std::string_view code, text;
};

constexpr std::array<Name, static_cast<std::size_t>(Reason::count)> kNames{{
    {"no-voucher", "单据未生成凭证"},
    {"no-document", "凭证没有对应单据"},
    {"not-posted", "凭证未过账"},
    {"other-period", "凭证与单据期间不同"},
    {"document-period", "业务单据与往来期间不同"},
    {"other-account", "凭证科目与单据不同"},
    {"other-contact", "凭证往来单位与单据不同"},
    {"other-currency", "凭证币别与单据不同"},
    {"other-amount", "凭证金额与单据不同"},
    {"subtracted-account", "凭证科目按相减比较"},
    {"rounding", "尾差"},
    {"document-account", "单据没有往来科目或科目不同"},
    {"transfer-no-voucher", "核销或转账未生成凭证"},
    {"offset-no-voucher", "预收预付冲销未入总账"},
    {"estimates", "暂估或委外加工未计入"},
    {"contact-balance", "往来余额不等于单据合计"},
    {"ledger-balance", "总账余额不等于凭证合计"},
    {"initial-data", "初始数据与期初余额不同"},
    {"carried-forward", "以前期间结转的差异"},
    {"cancelled-voucher", "凭证已作废或冲销"},
    {"not-shown", "无权查看的单据"},
    {"unexplained", "原因不明"},
}};

const Name& entry(Reason reason) {
  return kNames.at(static_cast<std::size_t>(reason));
}

}  // namespace

std::string_view codeOf(Reason reason) {
  return entry(reason).code;
}

std::string_view nameOf(Reason reason) {
  return entry(reason).text;
}

}  // namespace velmora::explain
