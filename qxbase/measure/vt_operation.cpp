#include "qxbase/measure/vt_operation.h"

#include <array>

#include "qxbase/resources/measure_texts.h"

namespace qx {
namespace {

constexpr std::array<ResourceText, TQXVTOperationCount> kOperationTexts = {
    res::_rsVT_METHOD0,  res::_rsVT_METHOD1,  res::_rsVT_METHOD2,  res::_rsVT_METHOD3,
    res::_rsVT_METHOD4,  res::_rsVT_METHOD5,  res::_rsVT_METHOD6,  res::_rsVT_METHOD7,
    res::_rsVT_METHOD8,  res::_rsVT_METHOD9,  res::_rsVT_METHOD10, res::_rsVT_METHOD11,
    res::_rsVT_METHOD12, res::_rsVT_METHOD13, res::_rsVT_METHOD14, res::_rsVT_METHOD15,
    res::_rsVT_METHOD16, res::_rsVT_METHOD17,
};

}  // namespace

QString GetOperationText(TQXVTOperation operation)
{
    const auto index = static_cast<std::size_t>(operation);
    if (index >= kOperationTexts.size()) return {};
    return kOperationTexts[index].Text();
}

}  // namespace qx
