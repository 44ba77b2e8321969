#include "platform/OpenableAddress.h"

#include "toolkit/Text.h"

#include <QRegularExpression>

namespace Brindle {

using namespace Qt::StringLiterals;

QString OpenableAddress(const QString& text) {
    const QString address = Trim(text);
    for (const QStringView scheme : {u"http://", u"https://"})
        if (StartsWithFolded(address, scheme))
            return address.size() > scheme.size() ? address : QString();
    // Labels joined by dots, the last one without digits, so that neither a number nor an e-mail address is a host.
    static const QRegularExpression bareHost(
        uR"(\A[\p{L}\p{N}](?:[\p{L}\p{N}-]*[\p{L}\p{N}])?(?:\.[\p{L}\p{N}-]+)*\.\p{L}{2,}\.?(?::\d{1,5})?(?:[/?#]\S*)?\z)"_s,
        QRegularExpression::UseUnicodePropertiesOption);
    return bareHost.match(address).hasMatch() ? QString(u"http://" + address) : QString();
}

} // namespace Brindle
