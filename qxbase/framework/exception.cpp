#include "qxbase/framework/exception.h"

#include <utility>

namespace qx {

Exception::Exception(QString message) : FMessage(std::move(message)), FUtf8(FMessage.toUtf8()) {}

}  // namespace qx
