#include "core/Harvest.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

namespace Brindle {

using namespace Qt::StringLiterals;

// Short date and long time of the locale, without what a file name cannot hold. The time zone, which some locales put
// into the long form, often in brackets, would only lengthen the name.
QString HarvestTimeStamp(const QDateTime& moment, const QLocale& locale) {
    static const QRegularExpression zone(uR"('[^']*'|\s*[(\[]?t+[)\]]?)"_s);
    const QString longFormat = locale.timeFormat(QLocale::LongFormat);
    QString timeFormat = longFormat;
    for (QRegularExpressionMatchIterator found = zone.globalMatch(longFormat); found.hasNext();) {
        const QString text = found.next().captured();
        if (!text.startsWith(u'\'')) // quoted letters stand for themselves
            timeFormat.remove(text);
    }
    QString stamp = locale.toString(moment.date(), QLocale::ShortFormat) + u' ' +
                    locale.toString(moment.time(), timeFormat.trimmed());
    stamp.replace(u':', u'-');
    stamp.replace(u'/', u'-');
    return stamp;
}

Harvest::Harvest(const Parts& parts)
    : State(parts.State),
      Leads(parts.Leads),
      Options(parts.Options),
      Texts(parts.Texts),
      Catalogue(parts.Catalogue),
      Loop(parts.Loop),
      Status(parts.Status),
      Notices(parts.Notices),
      Pages(parts.Pages),
      Emails(parts.Emails),
      Saver(parts.Saver) {}

const SiteEntry& Harvest::Site() const {
    static const SiteEntry unknown;
    const SiteEntry* const entry = Catalogue.Find(State.CurrID);
    return entry ? *entry : unknown;
}

QString Harvest::GetRedirect(const QString& url) {
    QString page;
    Pages.DownloadURL(url, page, false);
    return State.CurrRedirect;
}

void Harvest::Fail(const QString& message) {
    State.ShouldStop = true;
    State.FailureMessage = message;
    Notices.Warn(message);
}

void Harvest::Begin() {
    State.ExportedNum = 0;
    State.ExtractedNum = 0;
    State.MainCategory.clear();
    State.FailureMessage.clear();
    SavedKeys.Clear();
    Counts = {};
    State.ShouldStop = false;
    State.DateTimeVal = HarvestTimeStamp(QDateTime::currentDateTime(), QLocale::system());
}

} // namespace Brindle
