#include "workbench/Product.h"

namespace Brindle {

using namespace Qt::StringLiterals;

QString ProductTitle() {
    return u"Brindle"_s;
}

QString ProductVersion() {
    return QStringLiteral(BRINDLE_VERSION);
}

} // namespace Brindle
