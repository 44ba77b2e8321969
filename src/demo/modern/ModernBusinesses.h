#pragma once

#include "core/Lead.h"
#include "demo/DemoDirectory.h"

#include <QString>
#include <QStringView>

#include <vector>

namespace Brindle::Demo {

/// What one modern directory lists: invented businesses of one country, with numbers that are set aside for fiction
/// where the country has such.
struct ModernBusiness {
    int Number = 0; ///< from 0, in the order of the list
    QString Name;
    QString Category;
    QString Street;
    QString City;
    QString State;
    QString PostalCode;
    QString FullAddress; ///< in one line, as the country writes it
    QString Phone;
    QString Website; ///< empty for some
    QString Email;   ///< of the business's page in the directory; empty for some
    QString Slug;    ///< letters, digits and hyphens; no two are alike
};

/// The first `count` businesses of a country (ISO 3166 alpha-2; those of the modern directories). Websites lie on the
/// demo's server of websites, each under a host name of its own.
std::vector<ModernBusiness> ModernBusinessesOf(QStringView region, int count, const DemoContext& context);

/// The lead that a list gives that shows all of it; without e-mail, which details pages have.
Lead LeadOf(const ModernBusiness& business, const QString& detailsLink);

} // namespace Brindle::Demo
