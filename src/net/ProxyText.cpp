#include "net/ProxyText.h"

#include "toolkit/Markup.h"

namespace Brindle {

ProxyText ReadProxyText(const QString& line) {
    const QStringList fields = SplitText(line, u":");
    return {fields.value(0), fields.value(1), fields.value(2), fields.value(3), fields.size() > 3};
}

int ReadProxyPort(const QString& text) {
    constexpr int usualPort = 80;
    bool isNumber = false;
    const int port = text.toInt(&isNumber);
    return isNumber ? port : usualPort;
}

} // namespace Brindle
