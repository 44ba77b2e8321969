#include "demo/modern/ModernParts.h"

#include "demo/DemoPage.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

QString TelLink(const QString& phone) {
    QString link = u"tel:"_s;
    for (const QChar c : phone)
        if (c.isDigit() || c == u'+')
            link += c;
    return link;
}

QString Pager(int number, int last, QStringView nextWord, QStringView attributes) {
    QString html;
    for (int page = 1; page <= last; ++page)
        html += page == number ? u"<strong aria-current=\"page\">%1</strong> "_s.arg(page)
                               : u"<a href=\"/search?page=%1\">%1</a> "_s.arg(page);
    if (number < last)
        html += u"<a %1 href=\"/search?page=%2\">%3</a>"_s.arg(attributes)
                    .arg(number + 1)
                    .arg(EscapeHtml(nextWord.toString()));
    return html;
}

QString JsonValue(const QString& text) {
    QString value = text;
    value.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s).replace(u'<', u"\\u003c"_s);
    return value;
}

} // namespace Brindle::Demo
