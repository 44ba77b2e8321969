#include "PrintTo.h"

using namespace Qt::StringLiterals;

QT_BEGIN_NAMESPACE
void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

void PrintTo(const QStringList& texts, std::ostream* out) {
    *out << '[' << texts.join(u" | "_s).toStdString() << ']';
}
QT_END_NAMESPACE

namespace Brindle {

void PrintTo(const Lead& lead, std::ostream* out) {
    for (int column = 0; column < FieldCount; ++column)
        *out << "\n  " << EnglishCaptions()[column].toStdString() << ": \"" << lead.At(column).toStdString() << '"';
}

} // namespace Brindle
