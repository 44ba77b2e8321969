#include "discovery/Explain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QJsonValue TextOrNull(const QString& text) {
    return text.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}

// The keys stand in the order in which a person reads them, which a JSON object of Qt does not keep.
void Append(QByteArray& to, const QByteArray& key, const QJsonValue& value, bool last = false) {
    QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Indented).trimmed();
    // Within the brackets of the array that had to be put around it.
    text = text.sliced(1, text.size() - 2).trimmed();
    to += "    \"" + key + "\": " + text + (last ? "\n" : ",\n");
}

} // namespace

QByteArray ExplainReading(const AnyPageReading& reading) {
    QJsonObject fields;
    for (const FieldReading& field : reading.Fields)
        fields.insert(EnglishCaptions()[static_cast<int>(field.Column)],
                      QJsonObject{{u"selector"_s, TextOrNull(field.Selector)},
                                  {u"filled"_s, field.Filled},
                                  {u"why"_s, field.Why}});
    QJsonArray candidates;
    for (const ListCandidate& candidate : reading.Candidates)
        candidates.append(QJsonObject{{u"record"_s, TextOrNull(candidate.Selector)},
                                      {u"records"_s, candidate.Records},
                                      {u"score"_s, std::round(candidate.Score * 100) / 100},
                                      {u"verdict"_s, candidate.Verdict}});
    QByteArray json = "{\n";
    Append(json, "records", static_cast<qint64>(reading.Records.size()));
    Append(json, "source", TextOrNull(reading.Source));
    Append(json, "record", TextOrNull(reading.RecordSelector));
    Append(json, "fields", fields);
    Append(json, "next", TextOrNull(reading.Next.Address));
    Append(json, "nextWhy", reading.Next.Why);
    Append(json, "candidates", candidates, true);
    return json + "}\n";
}

} // namespace Brindle
