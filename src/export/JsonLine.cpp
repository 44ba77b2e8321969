#include "export/JsonLine.h"

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
    return JsonLine(lead, {}, {});
}

QByteArray JsonLine(const Lead& lead, const QStringList& captions, const QStringList& texts) {
    QString line = u"{"_s;
    const auto append = [&line](const QString& caption, const QString& text) {
        if (line.size() > 1)
            line += u", ";
        AppendString(line, caption);
        line += u": ";
        AppendString(line, text);
    };
    for (int column = 0; column < FieldCount; ++column)
        append(EnglishCaptions()[column], lead.At(column));
    for (qsizetype i = 0; i < captions.size(); ++i)
        append(captions[i], texts.value(i));
    line += u"}\n";
    return line.toUtf8();
}

} // namespace Brindle
