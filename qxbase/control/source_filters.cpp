#include "qxbase/control/source_filters.h"

#include <cstddef>

namespace qx {

// The walks index the list afresh on every step: a filter that registers another one may move
// the list's storage (the filters themselves stay where they are).

void TKSSourceFilters::RegisterFilter(std::unique_ptr<TKSSourceFilterBase> Filter)
{
    if (Filter)
        FFilters.push_back(std::move(Filter));
}

bool TKSSourceFilters::FilterSource(QStringList& Names, bool& Handled, TKSDeviceExchangeMethod Method)
{
    Handled = false;
    for (std::size_t i = 0; i < FFilters.size(); ++i) {
        if (FFilters[i]->FilterSourceList(Names, Handled, Method))
            return true;
        if (Handled)
            break;
    }
    return false;
}

bool TKSSourceFilters::RTCheckSources(const std::vector<QObject*>& Sources, TKSDeviceExchangeMethod Method)
{
    for (std::size_t i = 0; i < FFilters.size(); ++i)
        if (FFilters[i]->RTCheckSources(Sources, Method))
            return true;
    return false;
}

void TKSSourceFilters::GetContainedMeasureSources(const QStringList& Names, std::vector<QObject*>& Sources)
{
    for (std::size_t i = 0; i < FFilters.size(); ++i)
        FFilters[i]->GetContainedSources(Names, Sources);
}

TKSSourceFilters& SourceFilters()
{
    static TKSSourceFilters filters;
    return filters;
}

}  // namespace qx
