#pragma once

#include <QString>

namespace Brindle {

/// The user's options beyond those of the settings file. Their file is `options.toml`; each has a key of two words
/// there and for `--set`: `store.keep`.
struct MoreOptions {
    bool StoreKeep = true; ///< store.keep: the window keeps leads
    QString StoreTarget;   ///< store.target: a file or a postgresql address; empty: the file in the settings folder
    bool WorkbookAtEnd = false; ///< export.workbook_at_end: a workbook of the leads at the end of every harvest
    bool SheetCsvAtEnd = false; ///< export.sheet_csv_at_end: the same as CSV for spreadsheets

    QString MailNameServer;          ///< mail.name_server: "address:port" for --check-mx; empty: that of the system
    int WorkLeaseSeconds = 60;       ///< work.lease_seconds: a worker that is silent for so long has lost its search
    int WorkPageMilliseconds = 1000; ///< work.page_milliseconds: from one page of a host to the next, over all workers

    bool operator==(const MoreOptions&) const = default;
};

} // namespace Brindle
