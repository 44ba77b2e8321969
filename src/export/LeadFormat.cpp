#include "export/LeadFormat.h"

namespace Brindle {

using namespace Qt::StringLiterals;

const QStringList& LeadFormatNames() {
    static const QStringList names{u"csv"_s, u"csv-sheet"_s, u"jsonl"_s, u"xlsx"_s, u"vcf"_s};
    return names;
}

std::optional<LeadFormat> LeadFormatNamed(const QString& name) {
    const qsizetype index = LeadFormatNames().indexOf(name);
    return index < 0 ? std::nullopt : std::optional(static_cast<LeadFormat>(index));
}

LeadFormat LeadFormatOf(const QString& fileName) {
    for (const LeadFormat format : {LeadFormat::JsonLines, LeadFormat::Workbook, LeadFormat::VCard})
        if (fileName.endsWith(u'.' + LeadFormatNames()[static_cast<int>(format)], Qt::CaseInsensitive))
            return format;
    return LeadFormat::Csv;
}

} // namespace Brindle
