#include "qxbase/panels/property_page_opener.h"

namespace qx {
namespace {

TKSPropertyPageOpener& Opener()
{
    static TKSPropertyPageOpener opener;
    return opener;
}

}  // namespace

void SetPropertyPageOpener(TKSPropertyPageOpener Value)
{
    Opener() = std::move(Value);
}

const TKSPropertyPageOpener& GetPropertyPageOpener()
{
    return Opener();
}

}  // namespace qx
