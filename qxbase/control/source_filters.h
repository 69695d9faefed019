#pragma once

#include <QStringList>
#include <cstdint>
#include <memory>
#include <vector>

#include "qxbase/framework/export.h"

class QObject;

namespace qx {

// How the data sources of a worksheet may be exchanged for others. The last name is spelled so
// on purpose: device packages know it by that name.
enum TKSDeviceExchangeMethod : std::uint8_t { sfmExchangeIfPossible, sfmNeverExchange, sfmAlwaysEchange };

// A filter a device package registers. Data sources are passed as the QObjects they are; the
// package casts them to the source classes it knows.
class QXBASE_EXPORT TKSSourceFilterBase {
public:
    virtual ~TKSSourceFilterBase() = default;
    // May rewrite `Sources` and set `Handled` when the request is dealt with; returns whether it
    // filtered the list.
    virtual bool FilterSourceList(QStringList& Sources, bool& Handled, TKSDeviceExchangeMethod Method) = 0;
    // Checks the data sources at run time; true when the check is done.
    virtual bool RTCheckSources(const std::vector<QObject*>& Sources, TKSDeviceExchangeMethod Method) = 0;
    // Appends to `Sources` the data sources named in `Names` that the filter knows.
    virtual void GetContainedSources(const QStringList& Names, std::vector<QObject*>& Sources) = 0;
};

// The registered filters, asked in registration order. A filter may register further filters
// while it is asked; they are asked in the same walk.
class QXBASE_EXPORT TKSSourceFilters {
public:
    // Takes ownership; a null filter is ignored.
    void RegisterFilter(std::unique_ptr<TKSSourceFilterBase> Filter);
    // Clears `Handled`, then asks each filter until one returns true or sets `Handled`. Returns
    // whether a filter returned true.
    bool FilterSource(QStringList& Names, bool& Handled, TKSDeviceExchangeMethod Method);
    // The first filter that returns true ends the walk; false when none does.
    bool RTCheckSources(const std::vector<QObject*>& Sources, TKSDeviceExchangeMethod Method);
    // Every filter appends what it contains, in order; `Sources` is not cleared first.
    void GetContainedMeasureSources(const QStringList& Names, std::vector<QObject*>& Sources);

    int GetFilterCount() const { return static_cast<int>(FFilters.size()); }

private:
    std::vector<std::unique_ptr<TKSSourceFilterBase>> FFilters;
};

// The filters of the program.
QXBASE_EXPORT TKSSourceFilters& SourceFilters();

}  // namespace qx
