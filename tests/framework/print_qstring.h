#pragma once

#include <QString>
#include <ostream>

// Readable QString values in GoogleTest failure messages.
inline void PrintTo(const QString& text, std::ostream* os) { *os << '"' << text.toStdString() << '"'; }
