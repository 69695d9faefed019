#include "qxbase/sources/measure_link.h"

#include <algorithm>
#include <vector>

#include "qxbase/sources/measure_source.h"

namespace qx {

namespace {

// True when attaching a link owned by `Owner` to `Source` would let data flow back into the
// owner: `Source` is the owner itself or has the owner somewhere upstream of its input links.
// A walk that meets a loop it did not start from refuses as well, since it cannot end.
bool ClosesCycle(const QObject* Owner, TQXMeasureSourceEx* Source)
{
    if (Owner == nullptr || Source == nullptr)
        return false;
    if (Source == Owner)
        return true;
    std::vector<const TQXMeasureSourceEx*> visited;
    const TQXMeasureSourceEx* current = Source;
    while (const auto* processor = qobject_cast<const TQXMLSBaseEx*>(current)) {
        visited.push_back(processor);
        TQXMeasureSourceEx* upstream = processor->GetInputLink().GetSource();
        if (upstream == nullptr)
            return false;
        if (upstream == Owner)
            return true;
        if (std::find(visited.begin(), visited.end(), upstream) != visited.end())
            return true;
        current = upstream;
    }
    return false;
}

}  // namespace

TQXMeasureLinkEx::TQXMeasureLinkEx(QObject* Owner)
    : FOwner(Owner)
{
}

TQXMeasureLinkEx::~TQXMeasureLinkEx()
{
    // The source keeps a plain pointer to every listed link.
    if (FSource != nullptr)
        FSource->MeasureLinkExRemove(this);
}

void TQXMeasureLinkEx::SetQXMeasureSourceEx(TQXMeasureSourceEx* Source)
{
    if (Source == FSource)
        return;
    if (FSource != nullptr)
        FSource->MeasureLinkExRemove(this);
    if (ClosesCycle(FOwner.data(), Source))
        return;  // refused: the link stays detached, the old source is not restored
    FSource = Source;
    if (Source != nullptr)
        Source->MeasureLinkExAdd(this);
}

void TQXMeasureLinkEx::NewData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                               const TRVDataDoubleArray& TimeChannel, double StartTime)
{
    if (OnNewData && FSource != nullptr && FEnabled)
        OnNewData(this, Shortdefs, Data, TimeChannel, StartTime);
}

void TQXMeasureLinkEx::UpdateSettingsEx()
{
    if (OnUpdateSettings && FSource != nullptr)
        OnUpdateSettings(this);
}

const TQXMSExChannelInformation* TQXMeasureLinkEx::GetChannelList(int Index) const
{
    return FSource != nullptr ? FSource->GetChannelList(Index) : nullptr;
}

int TQXMeasureLinkEx::GetChannelListCount() const
{
    return FSource != nullptr ? FSource->GetChannelListCount() : 0;
}

int TQXMeasureLinkEx::OrigNameToChannel(const QString& Name) const
{
    const int count = GetChannelListCount();
    for (int i = 0; i < count; ++i) {
        const TQXMSExChannelInformation* info = GetChannelList(i);
        if (info != nullptr && info->Name == Name)
            return i;
    }
    return -1;
}

}  // namespace qx
