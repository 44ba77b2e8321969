#include "net/CharacterSets.h"

#include <QStringDecoder>

namespace Brindle {

std::optional<QString> DecodeCharacterSet(const QByteArray& name, const QByteArray& bytes) {
    QStringDecoder decode(name.constData(), QStringConverter::Flag::Stateless);
    if (!decode.isValid())
        return std::nullopt;
    return decode(bytes);
}

} // namespace Brindle
