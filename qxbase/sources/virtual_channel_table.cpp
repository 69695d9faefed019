#include "qxbase/sources/virtual_channel_table.h"

#include <QScopeGuard>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/variant.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/rv_compressor.h"
#include "qxbase/measure/vt_element_ops.h"

namespace qx {

namespace {

bool UsesSecondOperand(TQXVTOperation Operation)
{
    return Operation == qxvtSum || Operation == qxvtSubtract || Operation == qxvtProduct ||
           Operation == qxvtDivision;
}

TQXMSChannelFlags FlagsFor(TQXVTOperation Operation)
{
    TQXMSChannelFlags flags{msexVirtualChannel};
    if (Operation >= qxvtAverage && Operation <= qxvtDev) flags.Include(msexSingleValue);
    else if (Operation == qxvtFFT) flags.Include(msexFFTArrayData);
    else if (Operation == qxvtDigitalSplit) flags.Include(msexDIGINData);
    else flags.Include(msexArrayData);
    return flags;
}

// The operand's block, or null when the index lies outside the set (a missing operand).
const TRVDataDouble* Operand(const TRVDataDoubleArray& Data, std::int32_t Index)
{
    if (Index < 0 || static_cast<std::size_t>(Index) >= Data.size()) return nullptr;
    return &Data[static_cast<std::size_t>(Index)];
}

}  // namespace

TQXVirtualChannelTable::TQXVirtualChannelTable(TQXMeasureSourceEx& OutputSource, TQXMeasureLinkEx* InputLink)
    : FOutputSource(OutputSource), FInputLink(InputLink)
{
    if (FInputLink != nullptr) return;
    FOwnedLink = std::make_unique<TQXMeasureLinkEx>(&OutputSource);
    FOwnedLink->OnUpdateSettings = [this](TQXMeasureLinkEx*) { GetSourceSettings(); };
    FOwnedLink->OnNewData = [this](TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                   const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                                   double StartTime) { SendData(Link, Shortdefs, Data, TimeChannel, StartTime); };
    FInputLink = FOwnedLink.get();
}

TQXVirtualChannelTable::~TQXVirtualChannelTable()
{
    // Detaching tells the link's owner; the table's half is going, so nobody may answer.
    if (FOwnedLink) {
        FOwnedLink->OnUpdateSettings = nullptr;
        FOwnedLink->OnNewData = nullptr;
        FOwnedLink->SetQXMeasureSourceEx(nullptr);
    }
}

int TQXVirtualChannelTable::AddChannel(const QString& Name, const QString& SecondText, const QString& ThirdText,
                                       double RangeLow, double RangeHigh, TColor Color, TQXVTOperation Operation,
                                       std::int32_t OperationParameter, std::int32_t FirstOperandIndex,
                                       std::int32_t SecondOperandIndex, double X1, double X2, double Y1, double Y2,
                                       const TQXCoefficients& Coefficients)
{
    return AddChannel(Name, SecondText, ThirdText, RangeLow, RangeHigh, Color, Operation, OperationParameter,
                      FirstOperandIndex, SecondOperandIndex, X1, X2, Y1, Y2, Coefficients, QString(), QString());
}

int TQXVirtualChannelTable::AddChannel(const QString& Name, const QString& SecondText, const QString& ThirdText,
                                       double RangeLow, double RangeHigh, TColor Color, TQXVTOperation Operation,
                                       std::int32_t OperationParameter, std::int32_t FirstOperandIndex,
                                       std::int32_t SecondOperandIndex, double X1, double X2, double Y1, double Y2,
                                       const TQXCoefficients& Coefficients, const QString& FirstOperandName,
                                       const QString& SecondOperandName)
{
    TComputedChannel channel;
    TQXMSExChannelInformation& info = channel.Info;
    info.Name = Name;
    info.SecondText = SecondText;
    info.ThirdText = ThirdText;
    info.RangeLow = RangeLow;
    info.RangeHigh = RangeHigh;
    info.Flags = FlagsFor(Operation);
    info.Color = Color;
    info.Operation = Operation;
    info.OperationParameter = OperationParameter;
    info.FirstOperandIndex = FirstOperandIndex;
    info.FirstOperandName = FirstOperandName;
    info.SecondOperandIndex = SecondOperandIndex;
    info.SecondOperandName = SecondOperandName;
    info.ScalingValues = {X1, X2, Y1, Y2, 0, 0};
    info.Coefficients = Coefficients;
    info.Handle = FOutputSource.GetNewChannelHandle();
    FChannels.push_back(std::move(channel));
    const int index = static_cast<int>(FChannels.size()) - 1;
    GetSourceSettings();
    return index;
}

void TQXVirtualChannelTable::DeleteChannel(int Index)
{
    if (Index < 0 || static_cast<std::size_t>(Index) >= FChannels.size()) return;
    FChannels.erase(FChannels.begin() + Index);
    GetSourceSettings();
}

void TQXVirtualChannelTable::UpdateChannelInformation(int Index, const TQXMSExChannelInformation& Info)
{
    if (Index < 0 || static_cast<std::size_t>(Index) >= FChannels.size()) return;
    TQXMSExChannelInformation& info = FChannels[static_cast<std::size_t>(Index)].Info;
    const std::uint32_t handle = info.Handle;
    info = Info;
    info.Handle = handle;
    info.Flags = FlagsFor(Info.Operation);
    GetSourceSettings();
}

void TQXVirtualChannelTable::ChannelListClear()
{
    FChannels.clear();
    GetSourceSettings();
}

const TQXMSExChannelInformation* TQXVirtualChannelTable::GetChannelList(int Index) const
{
    if (Index < 0 || static_cast<std::size_t>(Index) >= FChannels.size()) return nullptr;
    return &FChannels[static_cast<std::size_t>(Index)].Info;
}

int TQXVirtualChannelTable::GetChannelListCount() const
{
    return static_cast<int>(FChannels.size());
}

int TQXVirtualChannelTable::CountNumberOfChannelType(TQXMSChannelFlag Flag) const
{
    return static_cast<int>(std::count_if(FChannels.begin(), FChannels.end(), [Flag](const TComputedChannel& c) {
        return c.Info.Flags.Contains(Flag);
    }));
}

TQXMeasureSourceEx* TQXVirtualChannelTable::GetQXMeasureSource() const
{
    return FInputLink->GetSource();
}

void TQXVirtualChannelTable::SetQXMeasureSource(TQXMeasureSourceEx* Source)
{
    FInputLink->SetQXMeasureSourceEx(Source);
}

void TQXVirtualChannelTable::FollowOperandNames()
{
    const int inputs = FInputLink->GetChannelListCount();
    const auto find = [&](const QString& Name) {
        for (int i = 0; i < inputs; ++i) {
            const TQXMSExChannelInformation* info = FInputLink->GetChannelList(i);
            if (info != nullptr && info->Name == Name) return i;
        }
        for (std::size_t j = 0; j < FChannels.size(); ++j)
            if (FChannels[j].Info.Name == Name) return inputs + static_cast<int>(j);
        return -1;
    };
    for (TComputedChannel& channel : FChannels) {
        TQXMSExChannelInformation& info = channel.Info;
        if (!info.FirstOperandName.isEmpty())
            if (const int found = find(info.FirstOperandName); found >= 0) info.FirstOperandIndex = found;
        if (!info.SecondOperandName.isEmpty())
            if (const int found = find(info.SecondOperandName); found >= 0) info.SecondOperandIndex = found;
    }
}

void TQXVirtualChannelTable::GetSourceSettings()
{
    FollowOperandNames();
    FOutputSource.ChannelListClear();
    const int inputs = FInputLink->GetChannelListCount();
    for (int i = 0; i < inputs; ++i) {
        const TQXMSExChannelInformation* info = FInputLink->GetChannelList(i);
        FOutputSource.ChannelListAddCopy(info != nullptr ? *info : TQXMSExChannelInformation());
    }
    for (const TComputedChannel& channel : FChannels) FOutputSource.ChannelListAddCopy(channel.Info);
    FOutputSource.ChannelChangeUpdate();
}

double TQXVirtualChannelTable::ReadSourceNumber(const QString& Name) const
{
    constexpr double absent = std::numeric_limits<double>::quiet_NaN();
    TQXMeasureSourceEx* source = FInputLink->GetSource();
    TQXPropertyHandle handle = 0;
    if (source == nullptr || !source->GetPropertyHandle(Name, handle)) return absent;
    Variant value;
    try {
        if (!source->GetPropertyValue(handle, value) || !IsNumericVarType(value.VarType())) return absent;
        return value.ToDouble();
    } catch (const Exception&) {
        return absent;  // a property that cannot be read counts as missing
    }
}

TRVDataDouble TQXVirtualChannelTable::ComputeFFT(const TRVDataDouble& Operand)
{
    double clock = ReadSourceNumber(QStringLiteral("ClockFrequencyReal"));
    double channels = ReadSourceNumber(QStringLiteral("NrOfCGLChannels"));
    // NaN fails the tests as well.
    if (!(clock > 0) || !std::isfinite(clock)) clock = 1.0;
    if (!(channels > 0) || !std::isfinite(channels)) channels = 1.0;
    FFFT.SetFrequency(clock / channels);
    TRVDataDouble result;
    FFFT.DoNewFFTOnChannel(Operand, result);
    return result;
}

TRVDataDouble TQXVirtualChannelTable::ExtendHeldValue(const TRVDataDoubleArray& Data, std::size_t InputCount,
                                                      int Index, int& RefPos, std::vector<int>* Stale)
{
    std::int32_t count = 0;
    RefPos = -1;
    for (std::size_t p = 0; p < InputCount; ++p) {
        if (Data[p].data != nullptr && Data[p].count > count) {
            count = Data[p].count;
            RefPos = static_cast<int>(p);
        }
    }
    TComputedChannel& channel = FChannels[static_cast<std::size_t>(Index)];
    TRVDataDouble result;
    if (count >= 1) {
        double value = NoValueMarker;
        if (const TRVDataDouble* operand = Operand(Data, channel.Info.FirstOperandIndex)) {
            if (HasSamples(*operand)) {
                channel.Held = operand->data[0];
                channel.Misses = 0;
            } else if (channel.Misses < std::numeric_limits<int>::max()) {
                ++channel.Misses;
            }
            value = channel.Held;
        }
        result = NewDataDouble(count);
        std::fill_n(result.data, count, value);
    }
    if (channel.Misses > 3) {
        if (Stale != nullptr) {
            Stale->push_back(Index);
        } else if (OnStaleValue) {
            auto release = qScopeGuard([&] { FreeDataDouble(result); });
            OnStaleValue(this, Index);
            release.dismiss();
        }
    }
    return result;
}

TRVDataDouble TQXVirtualChannelTable::ComputeBlock(const TRVDataDoubleArray& Data, std::size_t InputCount, int Index,
                                                   int& RefPos, std::vector<int>* Stale)
{
    RefPos = -1;
    if (Index < 0 || static_cast<std::size_t>(Index) >= FChannels.size()) return {};
    const TQXMSExChannelInformation& info = FChannels[static_cast<std::size_t>(Index)].Info;
    if (info.Operation == qxvtExtended) return ExtendHeldValue(Data, InputCount, Index, RefPos, Stale);

    const TRVDataDouble* a = Operand(Data, info.FirstOperandIndex);
    if (a == nullptr) return {};
    const TRVDataDouble* b = Operand(Data, info.SecondOperandIndex);
    const TRVDataDouble none;
    if (b == nullptr) b = &none;
    switch (info.Operation) {
    case qxvtNone: return DoDuplicate(*a);
    case qxvtSum: return DoSum(*a, *b);
    case qxvtSubtract: return DoSubtract(*a, *b);
    case qxvtProduct: return DoProduct(*a, *b);
    case qxvtDivision: return DoDivision(*a, *b);
    case qxvtAverage: return TQXRVCompressorEx::CompressAverage(*a, 1, 0);
    case qxvtFirst: return TQXRVCompressorEx::CompressFirst(*a, 1, 0);
    case qxvtLast: return TQXRVCompressorEx::CompressLast(*a, 1, 0);
    case qxvtMin: return TQXRVCompressorEx::CompressMin(*a, 1, 0);
    case qxvtMax: return TQXRVCompressorEx::CompressMax(*a, 1, 0);
    case qxvtRMS: return TQXRVCompressorEx::CompressRMS(*a, 1, 0);
    case qxvtDev: return TQXRVCompressorEx::CompressDev(*a, 1, 0);
    case qxvtFFT: return ComputeFFT(*a);
    case qxvtTwoPoint: return DoTwoPoint(*a, info.ScalingValues);
    case qxvtPolyLin: return DoPolyLin(*a, info.Coefficients);
    case qxvtDigitalSplit: return DoSplitChannels(*a, info.OperationParameter);
    case qxvtInverse: return DoInverse(*a);
    case qxvtExtended: break;
    }
    return {};  // an operation outside the enumeration
}

TRVDataDouble TQXVirtualChannelTable::GetVirtualData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                                     int Index, int& RefPos)
{
    Q_UNUSED(Shortdefs);
    const std::size_t inputCount = Data.size() > FChannels.size() ? Data.size() - FChannels.size() : 0;
    return ComputeBlock(Data, inputCount, Index, RefPos, nullptr);
}

void TQXVirtualChannelTable::BuildExtendedSet(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                                              TWorkspace& W)
{
    const std::size_t inputCount = Data.size();
    const std::size_t total = inputCount + FChannels.size();
    W.Defs.assign(total, TRVShortdef{});
    std::copy_n(Shortdefs.begin(), std::min(Shortdefs.size(), inputCount), W.Defs.begin());
    W.Blocks.assign(total, TRVDataDouble{});
    std::copy(Data.begin(), Data.end(), W.Blocks.begin());
    W.Filled.assign(total, 0);
    std::fill_n(W.Filled.begin(), inputCount, 1);
    W.Pending.clear();
    for (std::size_t i = 0; i < FChannels.size(); ++i) W.Pending.push_back(static_cast<int>(i));
    W.Stale.clear();

    // An operand outside the set is missing: ready, and the operation handles the absence.
    const auto ready = [&](std::int32_t Position) {
        return Position < 0 || static_cast<std::size_t>(Position) >= total ||
               W.Filled[static_cast<std::size_t>(Position)] != 0;
    };
    bool progress = true;
    while (!W.Pending.empty() && progress) {
        progress = false;
        std::size_t kept = 0;
        for (const int index : W.Pending) {
            // A bus property read for an FFT may have shrunk the list meanwhile.
            if (static_cast<std::size_t>(index) >= FChannels.size()) continue;
            const TQXMSExChannelInformation& info = FChannels[static_cast<std::size_t>(index)].Info;
            if (!ready(info.FirstOperandIndex) ||
                (UsesSecondOperand(info.Operation) && !ready(info.SecondOperandIndex))) {
                W.Pending[kept++] = index;
                continue;
            }
            const TQXVTOperation operation = info.Operation;
            const std::int32_t first = info.FirstOperandIndex;
            const std::size_t position = inputCount + static_cast<std::size_t>(index);
            int refPos = -1;
            W.Blocks[position] = ComputeBlock(W.Blocks, inputCount, index, refPos, &W.Stale);
            W.Filled[position] = 1;
            TRVShortdef& def = W.Defs[position];
            if (operation == qxvtExtended) {
                if (refPos >= 0) def = W.Defs[static_cast<std::size_t>(refPos)];
            } else if (first >= 0 && static_cast<std::size_t>(first) < total) {
                def = W.Defs[static_cast<std::size_t>(first)];
            }
            def.ChannelNo = static_cast<std::int32_t>(position);
            progress = true;
        }
        W.Pending.resize(kept);
    }
}

void TQXVirtualChannelTable::BuildTimeBlocks(const TRVDataDoubleArray& TimeChannel, std::size_t InputCount,
                                             TWorkspace& W) const
{
    const std::size_t total = W.Blocks.size();
    W.Time.assign(std::max(total, TimeChannel.size()), TRVDataDouble{});
    std::copy(TimeChannel.begin(), TimeChannel.end(), W.Time.begin());
    W.TimeValues.assign(total, 0.0);  // never grows below: the blocks point into it
    for (std::size_t index = 0; index < FChannels.size() && InputCount + index < total; ++index) {
        const std::size_t position = InputCount + index;
        const std::int32_t count = W.Blocks[position].count;
        if (count <= 0) continue;
        const TQXMSExChannelInformation& info = FChannels[index].Info;
        std::int32_t from = info.FirstOperandIndex;
        if (info.Operation == qxvtExtended) {  // the held value stretches over the longest input
            from = -1;
            for (std::size_t p = 0; p < InputCount && from < 0; ++p)
                if (W.Blocks[p].count == count) from = static_cast<std::int32_t>(p);
        }
        if (from < 0 || static_cast<std::size_t>(from) >= W.Time.size() || static_cast<std::size_t>(from) == position)
            continue;
        const TRVDataDouble operandTime = W.Time[static_cast<std::size_t>(from)];
        if (operandTime.data == nullptr) continue;
        if (count == operandTime.count) {
            W.Time[position] = operandTime;
        } else if (count == 1) {
            W.TimeValues[position] = operandTime.data[0];
            W.Time[position] = {&W.TimeValues[position], 1};
        }
    }
}

void TQXVirtualChannelTable::SendData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs,
                                      const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                                      double StartTime)
{
    Q_UNUSED(Link);
    TQXDestructionWatch::Frame frame(FWatch);
    // The arrays being sent live on this stack, so that they outlast the delivery even when a
    // receiver destroys the table; they borrow the member's capacity, except in a set sent from
    // within a delivery of ours, which must not reuse the arrays being delivered.
    const bool nested = FWorkspaceBusy;
    TWorkspace w;
    if (!nested) std::swap(w, FWorkspace);
    FWorkspaceBusy = true;
    const auto release = qScopeGuard([&] {
        if (frame.Gone()) return;
        w.Blocks.clear();  // the input blocks are not ours to keep pointing at
        w.Time.clear();
        if (nested) return;
        std::swap(w, FWorkspace);
        FWorkspaceBusy = false;
    });

    if (FChannels.empty()) {
        w.Blocks.assign(Data.begin(), Data.end());
        FOutputSource.ForwardData(Shortdefs, w.Blocks, TimeChannel, StartTime, w.Blocks.size());
        return;
    }

    try {
        BuildExtendedSet(Shortdefs, Data, w);
    } catch (...) {
        for (std::size_t i = Data.size(); i < w.Blocks.size(); ++i) FreeDataDouble(w.Blocks[i]);
        throw;
    }
    BuildTimeBlocks(TimeChannel, Data.size(), w);
    FOutputSource.ForwardData(w.Defs, w.Blocks, w.Time, StartTime, Data.size());

    // Told once the set is out, so that a listener may change the table.
    for (std::size_t k = 0; !frame.Gone() && k < w.Stale.size(); ++k) {
        if (!OnStaleValue) break;
        const TQXStaleValueEvent notify = OnStaleValue;
        notify(this, w.Stale[k]);
    }
}

}  // namespace qx
