#include "apps/qxsheet/console_demo.h"

#include "qxbase/framework/number_text.h"

namespace qxsheet {

int RunConsoleDemo(QTextStream& out)
{
    out << "qxsheet: " << qx::FloatToStr(1.7e30) << Qt::endl;
    return 0;
}

}  // namespace qxsheet
