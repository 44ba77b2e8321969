#pragma once

#include "demo/modern/ModernBusinesses.h"

#include <atomic>
#include <memory>

namespace httplib {
class Server;
struct Request;
} // namespace httplib

namespace Brindle::Demo {

/// One invented directory as today's are built. A look is one source file; ModernDirectories.cpp lists them. It answers
/// "/" with a search form, "/search?what=…&where=…&page=N" with results and "/biz/SLUG" with a business's own page.
/// Routes are answered on several threads at once.
class ModernDirectory {
public:
    struct Kind {
        QStringView Code;  ///< "demo-table"
        QStringView Label; ///< what is special about it
        QStringView Brand;
        QStringView Region;
        QStringView Language;
        int PerPage = 10;
        int Pages = 3;
        bool NeedsScripts = false;
        bool Secure = false; ///< served over https
    };

    explicit ModernDirectory(const Kind& kind) : kind_(kind) {}
    virtual ~ModernDirectory() = default;

    const Kind& Is() const { return kind_; }
    void AddRoutes(httplib::Server& server, const DemoContext& context);

    QString FirstResultPage(const DemoContext& context) const;
    /// The address of a search, with {what} and {where}.
    QString SearchAddress(const DemoContext& context) const;
    /// The leads of a harvest from the first page to the last, in order; with what the pages of the businesses add.
    std::vector<Lead> PlantedLeads(const DemoContext& context, bool withDetails) const;
    /// From now on the pages' classes have other names, as after a relaunch.
    void ChangeClasses(bool changed) { changed_ = changed; }

protected:
    struct Page {
        const DemoContext& Context;
        std::vector<ModernBusiness> Businesses; ///< of this page
        int Number = 1;
        int Last = 1;
    };

    /// The list with all that stands around it.
    virtual QString Body(const Page& page) const = 0;
    /// Goes into the head of a result page.
    virtual QString Head(const Page&) const { return {}; }
    /// The page of a business; the default shows all that is known of it.
    virtual QString DetailsBody(const DemoContext& context, const ModernBusiness& business) const;
    /// What the list gives of a business.
    virtual Lead ListedLead(const DemoContext& context, const ModernBusiness& business) const;
    /// Further addresses.
    virtual void AddOwnRoutes(httplib::Server&, const DemoContext&) {}

    std::vector<ModernBusiness> All(const DemoContext& context) const;
    Page PageOf(const DemoContext& context, int number) const;
    /// A class's name as it is today.
    QString C(QStringView name) const;
    static QString DetailsPath(const ModernBusiness& business) { return u"/biz/" + business.Slug; }
    static QString PagePath(int number);
    QString Document(const QString& title, const QString& head, const QString& body) const;

private:
    Kind kind_;
    std::atomic<bool> changed_{false};
};

/// All of them. `secure`: whether one that takes https can be served.
std::vector<std::unique_ptr<ModernDirectory>> AllModernDirectories(bool secure);

} // namespace Brindle::Demo
