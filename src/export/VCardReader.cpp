#include "export/VCardReader.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Property {
    QString Name; // upper case, without its group
    QString Parameters;
    QString Value;
};

// Cuts a line at its first colon that stands outside quotes (RFC 6350, section 3.3).
Property PropertyOf(const QString& line) {
    bool quoted = false;
    qsizetype colon = -1;
    for (qsizetype i = 0; i < line.size() && colon < 0; ++i) {
        if (line[i] == u'"')
            quoted = !quoted;
        else if (line[i] == u':' && !quoted)
            colon = i;
    }
    if (colon < 0)
        return {};
    const QString head = line.first(colon);
    const qsizetype semicolon = head.indexOf(u';');
    QString name = semicolon < 0 ? head : head.first(semicolon);
    name = name.sliced(name.indexOf(u'.') + 1).toUpper();
    return {name, semicolon < 0 ? QString() : head.sliced(semicolon + 1), line.sliced(colon + 1)};
}

// Splits at what is not escaped and takes the escapes off.
QStringList Components(const QString& value, QChar separator) {
    QStringList parts{QString()};
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == u'\\' && i + 1 < value.size()) {
            const QChar next = value[++i];
            parts.back() += next == u'n' || next == u'N' ? QChar(u'\n') : next;
        } else if (!separator.isNull() && value[i] == separator) {
            parts.append(QString());
        } else {
            parts.back() += value[i];
        }
    }
    return parts;
}

QString Unescaped(const QString& value) {
    return Components(value, QChar()).front();
}

// The label of an address, RFC 6868.
QString LabelOf(const QString& parameters) {
    const qsizetype at = parameters.indexOf(u"LABEL=\"", 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    const qsizetype from = at + 7;
    const qsizetype end = parameters.indexOf(u'"', from);
    const QString raw = parameters.sliced(from, (end < 0 ? parameters.size() : end) - from);
    QString label;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] == u'^' && i + 1 < raw.size() && QStringView(u"n^'").contains(raw[i + 1])) {
            const QChar next = raw[++i];
            label += next == u'n' ? QChar(u'\n') : next == u'\'' ? QChar(u'"') : next;
        } else {
            label += raw[i];
        }
    }
    return label;
}

void AppendTo(QString& field, const QString& text) {
    if (!text.isEmpty())
        field += field.isEmpty() ? text : u"; " + text;
}

void Take(const Property& property, Lead& lead) {
    const QString& value = property.Value;
    if (property.Name == u"FN" || (property.Name == u"ORG" && lead.Name.isEmpty())) {
        lead.Name = property.Name == u"FN" ? Unescaped(value) : Components(value, u';').front();
    } else if (property.Name == u"ADR") {
        const QStringList parts = Components(value, u';');
        lead.Street = parts.value(2);
        lead.City = parts.value(3);
        lead.State = parts.value(4);
        lead.PostalCode = parts.value(5);
        lead.Country = parts.value(6);
        lead.FullAddress = LabelOf(property.Parameters);
        if (property.Parameters.contains(u"X-UNDIVIDED", Qt::CaseInsensitive))
            lead.Street.clear();
    } else if (property.Name == u"TEL") {
        QString number = Unescaped(value);
        if (number.startsWith(u"tel:", Qt::CaseInsensitive))
            number.remove(0, 4);
        AppendTo(property.Parameters.contains(u"fax", Qt::CaseInsensitive) ? lead.Fax : lead.Phone, number);
    } else if (property.Name == u"EMAIL") {
        AppendTo(lead.Email, Unescaped(value));
    } else if (property.Name == u"URL" && lead.Website.isEmpty()) {
        lead.Website = value;
    } else if (property.Name == u"SOURCE") {
        lead.DetailsLink = value;
    } else if (property.Name == u"CATEGORIES") {
        lead.Category = Unescaped(value);
    } else if (property.Name == u"X-MAP-LINK") {
        lead.MapLink = Unescaped(value);
    }
}

} // namespace

LeadFile ReadVCards(const QString& text) {
    LeadFile file;
    Lead lead;
    qint64 number = 0;
    qint64 cardLine = 0;
    bool inCard = false;
    QString pending;
    const auto take = [&] {
        if (pending.isEmpty())
            return;
        const Property property = PropertyOf(pending);
        if (property.Name == u"BEGIN") {
            lead = {};
            inCard = true;
            cardLine = number;
        } else if (property.Name == u"END" && inCard) {
            file.Leads.push_back(lead);
            inCard = false;
        } else if (inCard) {
            Take(property, lead);
        }
        pending.clear();
    };
    for (qsizetype from = 0; from < text.size();) {
        qsizetype end = text.indexOf(u'\n', from);
        end = end < 0 ? text.size() : end;
        QStringView line = QStringView(text).sliced(from, end - from);
        from = end + 1;
        if (line.endsWith(u'\r'))
            line.chop(1);
        if (line.startsWith(u' ') || line.startsWith(u'\t')) { // goes on with the line before (section 3.2)
            pending += line.sliced(1);
        } else {
            take();
            pending = line.toString();
        }
        ++number;
    }
    take();
    if (inCard)
        file.Problems.append(u"line %1: the card has no end"_s.arg(cardLine));
    return file;
}

} // namespace Brindle
