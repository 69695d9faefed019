#pragma once

#include <QString>
#include <ostream>

// Lets failed expectations show QStrings as text instead of bytes.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
