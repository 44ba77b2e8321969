#include "cli/FurtherColumns.h"

#include "net/MailDomains.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

ExtraColumns FurtherColumns(const CommandLine& line, const MoreOptions& options) {
    std::vector<ExtraColumn> columns;
    try {
        columns = ExtraColumnsNamed(line.Columns);
    } catch (const Failure& failure) {
        throw UsageError(u"--columns: "_s + failure.Message());
    }
    if (!line.CheckMx)
        return ExtraColumns(std::move(columns));
    if (std::find(columns.begin(), columns.end(), ExtraColumn::CheckedEmail) == columns.end())
        columns.push_back(ExtraColumn::CheckedEmail);
    const auto domains = std::make_shared<MailDomains>(options.MailNameServer);
    return ExtraColumns(std::move(columns),
                        [domains](const QString& domain) { return domains->Check(domain) == MailDomain::TakesNone; });
}

} // namespace Brindle
