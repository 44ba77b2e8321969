// Prints the structured data of pages as JSON lines for the script beside it, with the time that reading them took:
// structured_items [--records] [--times N] [--url URL] PAGE...

#include "core/Errors.h"
#include "discovery/StructuredData.h"
#include "net/TextDecoder.h"
#include "toolkit/PageAddress.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <map>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

constexpr int deepest = 40;

QJsonObject JsonOf(const StructuredItems& items, int item, int depth) {
    const StructuredItem& said = items.At(item);
    std::map<QString, QJsonArray> byName;
    if (depth < deepest) {
        for (const StructuredProperty& property : said.Properties) {
            QJsonArray& values = byName[property.Name];
            if (property.Item < 0)
                values.append(property.Text);
            else if (items.At(property.Item).Parent == item)
                values.append(JsonOf(items, property.Item, depth + 1));
            else
                values.append(QJsonObject{{u"type"_s, QJsonArray::fromStringList(items.At(property.Item).Types)}});
        }
    }
    QJsonObject properties;
    for (const auto& [name, values] : byName)
        properties.insert(name, values);
    return {{u"type"_s, QJsonArray::fromStringList(said.Types)}, {u"id"_s, said.Id}, {u"properties"_s, properties}};
}

// Those that stand in no other one.
QJsonArray ItemsOf(const StructuredItems& items, Notation notation) {
    QJsonArray result;
    std::vector<bool> held(items.Items.size());
    for (size_t i = 0; i < items.Items.size(); ++i)
        for (const StructuredProperty& property : items.Items[i].Properties)
            if (property.Item >= 0 && items.At(property.Item).Parent == static_cast<int>(i))
                held[static_cast<size_t>(property.Item)] = true;
    for (size_t i = 0; i < items.Items.size(); ++i)
        if (items.Items[i].In == notation && !held[i])
            result.append(JsonOf(items, static_cast<int>(i), 0));
    return result;
}

QJsonArray RecordsOf(const std::vector<StructuredRecord>& records) {
    static constexpr const char* roles[] = {"plain", "listed", "owner", "nested"};
    static constexpr const char* kinds[] = {"business", "person", "link"};
    QJsonArray result;
    for (const StructuredRecord& record : records) {
        QJsonObject made{{u"in"_s, NotationName(record.In)},
                         {u"role"_s, QLatin1String(roles[static_cast<int>(record.Role)])},
                         {u"kind"_s, QLatin1String(kinds[static_cast<int>(record.Kind)])},
                         {u"list"_s, record.List},
                         {u"position"_s, record.Position}};
        for (int column = 0; column < FieldCount; ++column)
            if (!record.Fields.At(column).isEmpty())
                made.insert(EnglishCaptions()[column], record.Fields.At(column));
        result.append(made);
    }
    return result;
}

int Run(const QStringList& arguments) {
    bool records = false;
    int times = 1;
    QString url = u"http://www.example.com/"_s;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == u"--records") {
            records = true;
        } else if (arguments[i] == u"--times" && i + 1 < arguments.size()) {
            times = std::max(1, arguments[++i].toInt());
        } else if (arguments[i] == u"--url" && i + 1 < arguments.size()) {
            url = arguments[++i];
        } else {
            QFile file(arguments[i]);
            if (!file.open(QIODevice::ReadOnly))
                throw Failure(u"%1: %2"_s.arg(arguments[i], file.errorString()));
            const QString html = DecodePage(file.readAll());
            QElapsedTimer timer;
            timer.start();
            StructuredItems items;
            for (int round = 0; round < times; ++round)
                items = StructuredItemsOf(PageTree(html), url);
            const double milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6 / times;
            QJsonObject line{{u"page"_s, arguments[i]}, {u"ms"_s, milliseconds}};
            for (const Notation notation :
                 {Notation::JsonLd, Notation::Microdata, Notation::Rdfa, Notation::Microformats})
                line.insert(NotationName(notation), ItemsOf(items, notation));
            if (records)
                line.insert(u"records"_s, RecordsOf(StructuredRecords(PageTree(html), url)));
            const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact);
            std::printf("%s\n", text.constData());
        }
    }
    return 0;
}

} // namespace
} // namespace Brindle

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    try {
        return Brindle::Run(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
