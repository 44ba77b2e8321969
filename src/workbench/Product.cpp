#include "workbench/Product.h"

#include "core/Version.h"

namespace Brindle {

using namespace Qt::StringLiterals;

QString ProductTitle() {
    return u"Brindle"_s;
}

QString ProductVersion() {
    return ProgramVersion();
}

} // namespace Brindle
