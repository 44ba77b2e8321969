#include "cli/JsonLine.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

void AppendEscape(QString& to, char16_t unit) {
    to += u"\\u" + QString::number(unit, 16).rightJustified(4, u'0');
}

void AppendString(QString& to, const QString& text) {
    to += u'"';
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        switch (c.unicode()) {
        case u'"':
            to += u"\\\"";
            break;
        case u'\\':
            to += u"\\\\";
            break;
        case u'\n':
            to += u"\\n";
            break;
        case u'\r':
            to += u"\\r";
            break;
        case u'\t':
            to += u"\\t";
            break;
        default:
            if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
                to += c;
                to += text[++i];
            } else if (c.unicode() < 0x20 || c.isSurrogate()) {
                AppendEscape(to, c.unicode());
            } else {
                to += c;
            }
        }
    }
    to += u'"';
}

} // namespace

QByteArray JsonLine(const Lead& lead) {
    QString line = u"{"_s;
    for (int column = 0; column < FieldCount; ++column) {
        if (column > 0)
            line += u", ";
        AppendString(line, EnglishCaptions()[column]);
        line += u": ";
        AppendString(line, lead.At(column));
    }
    line += u"}\n";
    return line.toUtf8();
}

} // namespace Brindle
