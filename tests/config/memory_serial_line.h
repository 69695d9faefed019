#pragma once

#include <QByteArray>
#include <deque>
#include <functional>
#include <vector>

#include "qxbase/framework/serial_line.h"

namespace qx::test {

// A line in memory. After each write the responder says what arrives, as pieces: the first
// piece joins whatever is still unread, each further piece arrives only after a read time-out,
// so one read never spans two pieces. Reads return at once; waits are only recorded.
class TMemorySerialLine : public TSerialLine {
public:
    using TResponder = std::function<std::vector<QByteArray>(const QByteArray& written)>;

    explicit TMemorySerialLine(TResponder responder = {}) : FResponder(std::move(responder)) {}

    bool Write(const QByteArray& bytes) override
    {
        FWritten.push_back(bytes);
        if (FFailWrites) return false;
        if (FResponder) Arrive(FResponder(bytes));
        return true;
    }

    QByteArray Read(int maxBytes) override
    {
        FReads.push_back(maxBytes);
        if (FPieces.empty() || maxBytes <= 0) return {};
        QByteArray& front = FPieces.front();
        const QByteArray taken = front.left(maxBytes);
        front.remove(0, taken.size());
        if (front.isEmpty()) FPieces.pop_front();
        return taken;
    }

    void Wait(int milliseconds) override { FWaits.push_back(milliseconds); }

    void Arrive(const std::vector<QByteArray>& pieces)
    {
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (pieces[i].isEmpty()) continue;
            if (i == 0 && !FPieces.empty()) FPieces.back() += pieces[i];
            else FPieces.push_back(pieces[i]);
        }
    }

    QByteArray Unread() const
    {
        QByteArray all;
        for (const QByteArray& piece : FPieces) all += piece;
        return all;
    }

    std::vector<QByteArray> FWritten;
    std::vector<int> FReads;
    std::vector<int> FWaits;
    bool FFailWrites = false;

private:
    TResponder FResponder;
    std::deque<QByteArray> FPieces;
};

}  // namespace qx::test
