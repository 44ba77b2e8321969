#include "cli/LeadReport.h"

namespace Brindle {

using namespace Qt::StringLiterals;

void LeadReport::Add(const Lead& lead) {
    ++leads_;
    for (int column = 0; column < FieldCount; ++column)
        if (!lead.At(column).isEmpty())
            ++filled_.at(static_cast<size_t>(column));
}

QString LeadReport::Text() const {
    QString text = u"%1 %2\n"_s.arg(leads_).arg(leads_ == 1 ? u"lead" : u"leads");
    for (int column = 0; leads_ > 0 && column < FieldCount; ++column)
        text += u"  %1 %2 of %3\n"_s.arg(EnglishCaptions()[column], -13)
                    .arg(filled_.at(static_cast<size_t>(column)), 6)
                    .arg(leads_);
    if (pagesGivenUp_ > 0)
        text += u"%1 %2 not read to the end\n"_s.arg(pagesGivenUp_).arg(pagesGivenUp_ == 1 ? u"page" : u"pages");
    return text;
}

} // namespace Brindle
