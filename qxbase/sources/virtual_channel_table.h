#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/control/destruction_watch.h"
#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_information.h"
#include "qxbase/measure/channel_types.h"
#include "qxbase/measure/fft_processor.h"
#include "qxbase/sources/measure_link.h"
#include "qxbase/sources/measure_source.h"

namespace qx {

class TQXVirtualChannelTable;

// Told, with the computed channel's index, on every block set from the fourth empty operand
// block of a held-value channel on.
using TQXStaleValueEvent = std::function<void(TQXVirtualChannelTable* Sender, int Index)>;

// Math channels: appends computed channels to every block set of its input and sends the
// extended set through its output source.
class QXBASE_EXPORT TQXVirtualChannelTable {
public:
    // Sends through `OutputSource`, which must outlive the table. Without `InputLink` the table
    // makes its own input link (owner `OutputSource`, so the cycle check sees through it) and
    // listens to it; a processor passes its own input link instead and hands that link's
    // notices to GetSourceSettings and SendData itself. Neither is owned then.
    explicit TQXVirtualChannelTable(TQXMeasureSourceEx& OutputSource, TQXMeasureLinkEx* InputLink = nullptr);
    ~TQXVirtualChannelTable();
    TQXVirtualChannelTable(const TQXVirtualChannelTable&) = delete;
    TQXVirtualChannelTable& operator=(const TQXVirtualChannelTable&) = delete;

    // Appends a computed channel (flag msexVirtualChannel) with a handle from the output
    // source's GetNewChannelHandle and rebuilds the output's channel list; returns its index.
    // X1, X2, Y1, Y2 become the first four scaling values.
    int AddChannel(const QString& Name, const QString& SecondText, const QString& ThirdText, double RangeLow,
                   double RangeHigh, TColor Color, TQXVTOperation Operation, std::int32_t OperationParameter,
                   std::int32_t FirstOperandIndex, std::int32_t SecondOperandIndex, double X1, double X2, double Y1,
                   double Y2, const TQXCoefficients& Coefficients);
    // The same with the operands' channel names, which GetSourceSettings follows when the input's
    // channels move.
    int AddChannel(const QString& Name, const QString& SecondText, const QString& ThirdText, double RangeLow,
                   double RangeHigh, TColor Color, TQXVTOperation Operation, std::int32_t OperationParameter,
                   std::int32_t FirstOperandIndex, std::int32_t SecondOperandIndex, double X1, double X2, double Y1,
                   double Y2, const TQXCoefficients& Coefficients, const QString& FirstOperandName,
                   const QString& SecondOperandName);
    // Removes the computed channel and rebuilds the output's list; an index outside the list is
    // ignored. Operand indices of the others are not renumbered: operand names follow.
    void DeleteChannel(int Index);
    // Copies every field of `Info` into computed channel `Index` except its handle; the flags
    // follow the operation as in AddChannel. Rebuilds the output's list; an index outside the
    // list is ignored. Editors and stored worksheets reach the fields AddChannel does not take.
    void UpdateChannelInformation(int Index, const TQXMSExChannelInformation& Info);
    void ChannelListClear();
    // Null for an index outside the list.
    const TQXMSExChannelInformation* GetChannelList(int Index) const;
    int GetChannelListCount() const;
    int CountNumberOfChannelType(TQXMSChannelFlag Flag) const;

    TQXMeasureSourceEx* GetQXMeasureSource() const;
    // Attaches the input link (refused like any link where it would close a cycle).
    void SetQXMeasureSource(TQXMeasureSourceEx* Source);
    TQXMeasureLinkEx& GetInputLink() const { return *FInputLink; }
    TQXMeasureSourceEx& GetOutputSource() const { return FOutputSource; }
    // The processor behind qxvtFFT channels: its spec type and window apply to all of them.
    TKSZLFFT& GetFFT() { return FFFT; }
    const TKSZLFFT& GetFFT() const { return FFFT; }

    // The output source's channel list becomes the input's channels followed by the computed
    // ones; then the output tells its links.
    void GetSourceSettings();
    // The block of computed channel `Index` from the set being built (inputs first, then the
    // computed channels in list order); the empty block for an index outside the list. RefPos is
    // the position whose definition the result takes for qxvtExtended, else -1. Raises what the
    // FFT raises (EFFTError, ERangeError) and std::bad_alloc.
    TRVDataDouble GetVirtualData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data, int Index,
                                 int& RefPos);
    // The input link's data handler: builds and sends the extended set. Stale notices follow
    // the send. When a computation raises, the blocks computed so far are freed, nothing is sent
    // and the exception passes to the sending source.
    void SendData(TQXMeasureLinkEx* Link, const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                  const TRVDataDoubleArray& TimeChannel, double StartTime);

    TQXStaleValueEvent OnStaleValue;

private:
    // A computed channel with the held value and miss counter of qxvtExtended: one pair per
    // channel, so two held-value channels never share a value.
    struct TComputedChannel {
        TQXMSExChannelInformation Info;
        double Held = NoValueMarker;
        int Misses = 0;
    };
    // The arrays of one SendData, kept between calls so that a cycle allocates only the
    // computed blocks.
    struct TWorkspace {
        TRVShortdefs Defs;
        TRVDataDoubleArray Blocks;
        std::vector<int> Pending;
        std::vector<char> Filled;
        std::vector<int> Stale;
        // Time blocks of the set: the input's, then per computed channel its operand's time
        // block when the counts agree, or one time from TimeValues for a one-value result. All
        // borrowed, none freed by the output.
        TRVDataDoubleArray Time;
        std::vector<double> TimeValues;
    };

    // GetVirtualData for a set whose first InputCount positions are the input's. Stale, when
    // given, collects the channels whose notification is due instead of calling it.
    TRVDataDouble ComputeBlock(const TRVDataDoubleArray& Data, std::size_t InputCount, int Index, int& RefPos,
                               std::vector<int>* Stale);
    TRVDataDouble ExtendHeldValue(const TRVDataDoubleArray& Data, std::size_t InputCount, int Index,
                                  int& RefPos, std::vector<int>* Stale);
    TRVDataDouble ComputeFFT(const TRVDataDouble& Operand);
    // Computes every channel it can into W (steps 2 to 5 of a cycle).
    void BuildExtendedSet(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data, TWorkspace& W);
    void BuildTimeBlocks(const TRVDataDoubleArray& TimeChannel, std::size_t InputCount, TWorkspace& W) const;
    double ReadSourceNumber(const QString& Name) const;
    void FollowOperandNames();

    TQXMeasureSourceEx& FOutputSource;
    std::unique_ptr<TQXMeasureLinkEx> FOwnedLink;
    TQXMeasureLinkEx* FInputLink;
    std::vector<TComputedChannel> FChannels;
    TKSZLFFT FFFT;
    TWorkspace FWorkspace;
    bool FWorkspaceBusy = false;  // a nested SendData works in arrays of its own
    TQXDestructionWatch FWatch;
};

}  // namespace qx
