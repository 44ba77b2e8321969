#include "export/LeadLines.h"

#include "export/CsvFormat.h"
#include "export/JsonLine.h"
#include "export/SheetCsv.h"
#include "export/VCard.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The classic lines, whose further fields are written like the others.
class ClassicLines : public LeadLines {
public:
    explicit ClassicLines(const ExportShape& shape)
        : shape_(shape), csv_(shape.Options), encode_(QStringConverter::System) {}

    void AppendHeader(QByteArray& to) override {
        csv_.AppendHeader(to, shape_.Captions);
        AppendFields(to, shape_.Extra.Captions());
    }
    void AppendLead(QByteArray& to, const Lead& lead) override {
        csv_.AppendLead(to, lead);
        AppendFields(to, shape_.Extra.Of(lead));
    }

private:
    void AppendFields(QByteArray& to, const QStringList& fields) {
        if (fields.isEmpty())
            return;
        to.chop(2); // the line end
        QString more;
        for (const QString& field : fields)
            more += shape_.Options.eDelimiter + u'"' + field + u'"';
        to += encode_(more);
        to += "\r\n";
    }

    ExportShape shape_;
    CsvFormat csv_;
    QStringEncoder encode_;
};

class JsonLines : public LeadLines {
public:
    explicit JsonLines(const ExportShape& shape) : extra_(shape.Extra), captions_(extra_.Captions()) {}
    void AppendLead(QByteArray& to, const Lead& lead) override {
        to += extra_.IsEmpty() ? JsonLine(lead) : JsonLine(lead, captions_, extra_.Of(lead));
    }

private:
    ExtraColumns extra_;
    QStringList captions_;
};

} // namespace

QString ExportLosses::Text() const {
    QStringList parts;
    if (Characters > 0)
        parts.append(u"%1 texts without characters that the format cannot hold"_s.arg(Characters));
    if (Shortened > 0)
        parts.append(u"%1 texts shortened"_s.arg(Shortened));
    if (PlainLinks > 0)
        parts.append(u"%1 links as plain text"_s.arg(PlainLinks));
    return parts.join(u", "_s);
}

std::unique_ptr<LeadLines> MakeLeadLines(LeadFormat format, const ExportShape& shape) {
    switch (format) {
    case LeadFormat::CsvSheet:
        return std::make_unique<SheetCsv>(shape);
    case LeadFormat::JsonLines:
        return std::make_unique<JsonLines>(shape);
    case LeadFormat::VCard:
        return std::make_unique<VCardLines>();
    case LeadFormat::Csv:
    case LeadFormat::Workbook:
        break;
    }
    return std::make_unique<ClassicLines>(shape);
}

} // namespace Brindle
