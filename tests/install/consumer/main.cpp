#include <cstdio>

#include "qxbase/framework/number_text.h"

int main()
{
    const QString text = qx::FloatToStr(1.7e30);
    std::printf("%s\n", qPrintable(text));
    return text == QStringLiteral("1.7E30") ? 0 : 1;
}
