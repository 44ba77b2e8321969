#include "core/MessageTexts.h"

#include "toolkit/Text.h"

namespace Brindle {

const QString& MessageTexts::Text(Message slot) const {
    return slots_.at(static_cast<size_t>(slot));
}

void MessageTexts::Set(Message slot, const QString& text) {
    slots_.at(static_cast<size_t>(slot)) = text;
}

QString MessageTexts::WithNumber(Message slot, qint64 number) const {
    QString text = Text(slot);
    ReplaceAll(text, u"[VAR1]", QString::number(number));
    return text;
}

} // namespace Brindle
