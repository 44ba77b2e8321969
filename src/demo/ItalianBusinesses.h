#pragma once

#include "demo/DemoLinks.h"

#include <QString>
#include <QStringView>

#include <span>
#include <vector>

namespace Brindle::Demo {

/// An invented business of the Italian directories. All five list the same ones, each in its own way.
struct ItalianBusiness {
    QStringView Name;
    QStringView Street;
    QStringView PostalCode;
    QStringView Town;
    QStringView Province;
    QStringView Phone;
    QStringView Fax;
    QStringView Email;
    Web Site;
};

inline constexpr int ListingsPerPage = 21;

std::span<const ItalianBusiness> ItalianBusinesses();

/// Name and number of a business as part of an address.
QString PathNameOf(int number);

/// How many result pages there are.
int ItalianPageCount();

/// The businesses on a result page, 1-based. The first one is promoted on top of every page.
std::vector<int> NumbersOnPage(int page);

} // namespace Brindle::Demo
