#include "qxbase/sources/measure_source.h"

#include <QChar>
#include <QPointer>
#include <algorithm>
#include <exception>

#include "qxbase/control/control_source.h"
#include "qxbase/framework/debug_output.h"
#include "qxbase/framework/exception.h"
#include "qxbase/measure/block_buffer.h"

namespace qx {

namespace {

// A faulty consumer must not keep the others from their data, nor leave buffers behind.
template <class F>
void Guarded(const TQXMeasureSourceEx& Source, const char* What, F&& Call) noexcept
{
    try {
        Call();
    } catch (const std::exception& e) {
        try {
            KSDebugOutputString(QStringLiteral("%1: %2 raised: %3")
                                    .arg(Source.GetObjectDescription(), QLatin1String(What),
                                         QString::fromUtf8(e.what())));
        } catch (...) {
        }
    } catch (...) {
        try {
            KSDebugOutputString(QStringLiteral("%1: %2 raised an unknown exception")
                                    .arg(Source.GetObjectDescription(), QLatin1String(What)));
        } catch (...) {
        }
    }
}

// How the debug trace names a link's owner: a control source by its description, any other
// object by its name.
QString OwnerText(const QObject* Owner)
{
    if (Owner == nullptr)
        return {};
    if (const auto* source = dynamic_cast<const TQXControlSource*>(Owner))
        return source->GetObjectDescription();
    return Owner->objectName();
}

// Frees the blocks a delivery owns when it leaves, by whatever path: the data blocks from
// `OwnedFrom` on and, when given, every time-channel block.
class TBufferRelease {
public:
    TBufferRelease(TRVDataDoubleArray& Data, std::size_t OwnedFrom, TRVDataDoubleArray* TimeChannel) noexcept
        : FData(Data), FOwnedFrom(OwnedFrom), FTimeChannel(TimeChannel)
    {
    }
    ~TBufferRelease()
    {
        for (std::size_t i = FOwnedFrom; i < FData.size(); ++i)
            FreeDataDouble(FData[i]);
        if (FTimeChannel != nullptr)
            FreeDataDoubleArray(*FTimeChannel);
    }
    TBufferRelease(const TBufferRelease&) = delete;
    TBufferRelease& operator=(const TBufferRelease&) = delete;

private:
    TRVDataDoubleArray& FData;
    std::size_t FOwnedFrom;
    TRVDataDoubleArray* FTimeChannel;
};

}  // namespace

// One walk over the link list: removals leave gaps until the outermost walk ends, unless the
// source died meanwhile.
class TQXMeasureSourceEx::TLinkWalk {
public:
    explicit TLinkWalk(TQXMeasureSourceEx& Source) noexcept : FSource(Source), FFrame(Source.FLinkWatch)
    {
        ++Source.FWalkDepth;
    }
    ~TLinkWalk()
    {
        if (FFrame.Gone()) return;
        if (--FSource.FWalkDepth == 0) FSource.CompactLinks();
    }
    TLinkWalk(const TLinkWalk&) = delete;
    TLinkWalk& operator=(const TLinkWalk&) = delete;

    bool Gone() const noexcept { return FFrame.Gone(); }

private:
    TQXMeasureSourceEx& FSource;
    TQXDestructionWatch::Frame FFrame;
};

TQXMeasureSourceEx::TQXMeasureSourceEx(QWidget* parent)
    : TKSSourceControlClient(parent)
{
}

TQXMeasureSourceEx::~TQXMeasureSourceEx()
{
    FLinksDestroying = true;
    ++FWalkDepth;  // never closed: removals during the notices below leave gaps
    if (OnDestruction)
        Guarded(*this, "destruction notification", [&] { OnDestruction(this); });
    for (std::size_t i = 0; i < FLinks.size(); ++i) {
        TQXMeasureLinkEx* link = FLinks[i];
        if (link == nullptr)
            continue;
        // A link listed twice is told once; its later entries could outlive it.
        std::replace(FLinks.begin(), FLinks.end(), link, static_cast<TQXMeasureLinkEx*>(nullptr));
        TQXMeasureSourceEx* remembered = link->FSource;
        link->FSource = nullptr;
        TQXDestructionWatch::Frame linkFrame(link->FWatch);
        Guarded(*this, "UpdateSettingsEx", [&] { link->UpdateSettingsEx(); });
        if (linkFrame.Gone() || !link->OnSourceDestroyed)
            continue;
        const TQXSourceDestroyedEvent handler = link->OnSourceDestroyed;
        Guarded(*this, "OnSourceDestroyed", [&] { handler(remembered); });
    }
    FLinks.clear();
    FChannels.clear();
}

void TQXMeasureSourceEx::MeasureLinkExAdd(TQXMeasureLinkEx* Link)
{
    if (Link == nullptr)
        return;
    if (FLinksDestroying) {
        if (Link->FSource == this)
            Link->FSource = nullptr;
        return;
    }
    if (Link->FSource != nullptr && Link->FSource != this)
        Link->FSource->MeasureLinkExRemove(Link);
    FLinks.push_back(Link);
    Link->FSource = this;
    Link->UpdateSettingsEx();
}

void TQXMeasureSourceEx::MeasureLinkExRemove(TQXMeasureLinkEx* Link)
{
    if (Link == nullptr)
        return;
    if (Link->FSource != nullptr && Link->FSource != this) {
        Link->FSource->MeasureLinkExRemove(Link);
        return;
    }
    Link->FSource = nullptr;
    const auto listed = std::find(FLinks.begin(), FLinks.end(), Link);
    if (listed == FLinks.end())
        return;
    if (FWalkDepth > 0)
        std::replace(listed, FLinks.end(), Link, static_cast<TQXMeasureLinkEx*>(nullptr));
    else
        FLinks.erase(std::remove(listed, FLinks.end(), Link), FLinks.end());
    Link->UpdateSettingsEx();
}

std::vector<TQXMeasureLinkEx*> TQXMeasureSourceEx::GetLinks() const
{
    std::vector<TQXMeasureLinkEx*> links;
    links.reserve(FLinks.size());
    std::copy_if(FLinks.begin(), FLinks.end(), std::back_inserter(links),
                 [](const TQXMeasureLinkEx* link) { return link != nullptr; });
    return links;
}

int TQXMeasureSourceEx::GetLinkCount() const
{
    return static_cast<int>(std::count_if(FLinks.begin(), FLinks.end(),
                                          [](const TQXMeasureLinkEx* link) { return link != nullptr; }));
}

void TQXMeasureSourceEx::CompactLinks()
{
    FLinks.erase(std::remove(FLinks.begin(), FLinks.end(), nullptr), FLinks.end());
}

std::uint32_t TQXMeasureSourceEx::GetNewChannelHandle()
{
    return ++FLastChannelHandle;
}

void TQXMeasureSourceEx::ChannelChangeUpdate()
{
    TLinkWalk walk(*this);
    const std::size_t count = FLinks.size();
    for (std::size_t i = 0; i < count; ++i) {
        TQXMeasureLinkEx* link = FLinks[i];
        if (link == nullptr)
            continue;
        Guarded(*this, "UpdateSettingsEx", [&] { link->UpdateSettingsEx(); });
        if (walk.Gone())
            return;
    }
}

void TQXMeasureSourceEx::ChannelListAdd(const QString& Name, const QString& SecondText,
                                        const QString& ThirdText, double RangeLow, double RangeHigh,
                                        TQXMSChannelFlags Flags, TColor Color, std::uint32_t Handle,
                                        bool OptionFlag)
{
    ChannelListAdd(Name, SecondText, ThirdText, RangeLow, RangeHigh, Flags, Color, 0, 1, 0, 1, OptionFlag,
                   Handle);
}

void TQXMeasureSourceEx::ChannelListAdd(const QString& Name, const QString& SecondText,
                                        const QString& ThirdText, double RangeLow, double RangeHigh,
                                        TQXMSChannelFlags Flags, TColor Color, double X1, double X2,
                                        double Y1, double Y2, bool OptionFlag, std::uint32_t Handle)
{
    ChannelListAdd(Name, SecondText, ThirdText, RangeLow, RangeHigh, Flags, Color, X1, X2, Y1, Y2, OptionFlag,
                   TQXCoefficients{}, qxvtNone, -1, -1, -1, QString(), QString(), Handle);
}

void TQXMeasureSourceEx::ChannelListAdd(const QString& Name, const QString& SecondText,
                                        const QString& ThirdText, double RangeLow, double RangeHigh,
                                        TQXMSChannelFlags Flags, TColor Color, double X1, double X2,
                                        double Y1, double Y2, bool OptionFlag,
                                        const TQXCoefficients& Coefficients, TQXVTOperation Operation,
                                        std::int32_t OperationParameter, std::int32_t FirstOperandIndex,
                                        std::int32_t SecondOperandIndex, std::uint32_t Handle)
{
    ChannelListAdd(Name, SecondText, ThirdText, RangeLow, RangeHigh, Flags, Color, X1, X2, Y1, Y2, OptionFlag,
                   Coefficients, Operation, OperationParameter, FirstOperandIndex, SecondOperandIndex,
                   QString(), QString(), Handle);
}

void TQXMeasureSourceEx::ChannelListAdd(const QString& Name, const QString& SecondText,
                                        const QString& ThirdText, double RangeLow, double RangeHigh,
                                        TQXMSChannelFlags Flags, TColor Color, double X1, double X2,
                                        double Y1, double Y2, bool OptionFlag,
                                        const TQXCoefficients& Coefficients, TQXVTOperation Operation,
                                        std::int32_t OperationParameter, std::int32_t FirstOperandIndex,
                                        std::int32_t SecondOperandIndex, const QString& FirstOperandName,
                                        const QString& SecondOperandName, std::uint32_t Handle)
{
    auto info = std::make_unique<TQXMSExChannelInformation>();
    info->Name = Name;
    info->SecondText = SecondText;
    info->ThirdText = ThirdText;
    info->RangeLow = RangeLow;
    info->RangeHigh = RangeHigh;
    info->Flags = Flags;
    info->Color = Color;
    info->ScalingValues = {X1, X2, Y1, Y2, 0, 0};
    info->OptionFlag = OptionFlag;
    info->Coefficients = Coefficients;
    info->Operation = Operation;
    info->OperationParameter = OperationParameter;
    info->FirstOperandIndex = FirstOperandIndex;
    info->SecondOperandIndex = SecondOperandIndex;
    info->FirstOperandName = FirstOperandName;
    info->SecondOperandName = SecondOperandName;
    info->Handle = Handle;
    FChannels.push_back(std::move(info));
}

void TQXMeasureSourceEx::ChannelListClear()
{
    FChannels.clear();
}

const TQXMSExChannelInformation* TQXMeasureSourceEx::GetChannelList(int Index) const
{
    if (Index < 0)
        throw ERangeError(QStringLiteral("List index out of bounds (%1)").arg(Index));
    if (Index >= GetChannelListCount())
        return nullptr;
    return FChannels[static_cast<std::size_t>(Index)].get();
}

int TQXMeasureSourceEx::GetChannelListCount() const
{
    return static_cast<int>(FChannels.size());
}

void TQXMeasureSourceEx::ChannelListAddCopy(const TQXMSExChannelInformation& Info)
{
    auto copy = std::make_unique<TQXMSExChannelInformation>();
    *copy = Info;  // assignment carries every field
    FChannels.push_back(std::move(copy));
}

void TQXMeasureSourceEx::UpdateChannelInformation(int Index, const TQXMSExChannelInformation& Info)
{
    if (Index < 0)
        throw ERangeError(QStringLiteral("List index out of bounds (%1)").arg(Index));
    if (Index >= GetChannelListCount())
        return;
    *FChannels[static_cast<std::size_t>(Index)] = Info;
}

void TQXMeasureSourceEx::TraceDelivery(const QObject* Owner)
{
    EventFire(0, qxecDebugMessage,
              QStringLiteral("4") + QChar(8) + GetObjectDescription() + QChar(8) + OwnerText(Owner));
}

void TQXMeasureSourceEx::SendData(const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data,
                                  TRVDataDoubleArray& TimeChannel, double StartTime)
{
    bool alive = false;
    {
        TBufferRelease release(Data, 0, &TimeChannel);
        alive = Deliver(Shortdefs, Data, TimeChannel, StartTime);
    }
    if (alive)
        EventFire(0, qxecDataEvent, QString());
}

void TQXMeasureSourceEx::ForwardData(const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data,
                                     const TRVDataDoubleArray& TimeChannel, double StartTime,
                                     std::size_t BorrowedBlocks)
{
    bool alive = false;
    {
        TBufferRelease release(Data, BorrowedBlocks, nullptr);
        alive = Deliver(Shortdefs, Data, TimeChannel, StartTime);
    }
    if (alive)
        EventFire(0, qxecDataEvent, QString());
}

bool TQXMeasureSourceEx::Deliver(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                 const TRVDataDoubleArray& TimeChannel, double StartTime)
{
    TLinkWalk walk(*this);
    // Links attached during the delivery are beyond this bound and wait for the next set.
    const std::size_t count = FLinks.size();
    for (std::size_t i = 0; i < count; ++i) {
        TQXMeasureLinkEx* link = FLinks[i];
        if (link == nullptr)
            continue;
        // The handler may free its link and its owner; the trace still names the owner.
        QPointer<QObject> owner;
        if (DoDebug)
            owner = link->GetOwner();
        Guarded(*this, "NewData", [&] { link->NewData(Shortdefs, Data, TimeChannel, StartTime); });
        if (walk.Gone())
            return false;
        if (!DoDebug)
            continue;
        const QObject* traced = FLinks[i] == link ? link->GetOwner() : owner.data();
        TraceDelivery(traced);
        if (walk.Gone())
            return false;
    }
    return true;
}

TQXMeasureSourceExSingle::TQXMeasureSourceExSingle(QWidget* parent)
    : TQXMeasureSourceEx(parent)
{
}

void TQXMeasureSourceExSingle::SetSynchonizerMode(TKSSynchonizerMode Value)
{
    FSynchonizerMode = Value;
}

TQXMLSBaseEx::TQXMLSBaseEx(QWidget* parent)
    : TQXMeasureSourceEx(parent)
    , FInputLink(std::make_unique<TQXMeasureLinkEx>(this))
{
    FInputLink->OnUpdateSettings = [this](TQXMeasureLinkEx* Sender) { MLSOnUpdateSettings(Sender); };
    FInputLink->OnNewData = [this](TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                   const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                                   double StartTime) {
        MLSOnNewData(Link, Shortdefs, Data, TimeChannel, StartTime);
    };
}

TQXMLSBaseEx::~TQXMLSBaseEx()
{
    FInputLink.reset();
}

TQXMeasureSourceEx* TQXMLSBaseEx::GetQXMeasureSource() const
{
    return FInputLink->GetSource();
}

void TQXMLSBaseEx::SetQXMeasureSource(TQXMeasureSourceEx* Source)
{
    if (Source != FInputLink->GetSource() && Source != this)
        FInputLink->SetQXMeasureSourceEx(Source);
}

TQXMeasureSourceEx* TQXMLSBaseEx::GetMeasureSource() const
{
    return GetQXMeasureSource();
}

void TQXMLSBaseEx::SetMeasureSource(TQXMeasureSourceEx* Value)
{
    SetQXMeasureSource(Value);
}

void TQXMLSBaseEx::MLSOnUpdateSettings(TQXMeasureLinkEx* Sender)
{
    Q_UNUSED(Sender);
}

void TQXMLSBaseEx::MLSOnNewData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                                double StartTime)
{
    Q_UNUSED(Link);
    Q_UNUSED(Shortdefs);
    Q_UNUSED(Data);
    Q_UNUSED(TimeChannel);
    Q_UNUSED(StartTime);
}

}  // namespace qx
