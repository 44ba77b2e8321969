// Words that by themselves, or in a row of such, are the trade of a business: cuisines, kinds of houses and shops,
// fields of doctors and lawyers.
#include "discovery/AnyPageText.h"
#include "discovery/Labels.h"
#include "discovery/WordTable.h"

#include <QList>

namespace Brindle {

namespace {

constexpr QStringView trades =
    u"american|new american|american (new)|american (traditional)|contemporary|contemporary american|british|modern "
    u"british|modern european|european|eastern european|continental|english|irish|modern irish|scottish|french|italian|"
    u"spanish|tapas|portuguese|german|austrian|swiss|dutch|belgian|greek|mediterranean|turkish|lebanese|middle "
    u"eastern|moroccan|persian|indian|north indian|south indian|pakistani|bangladeshi|nepalese|sri "
    u"lankan|thai|vietnamese|chinese|cantonese|szechuan|"
    u"dim sum|japanese|sushi|korean|malaysian|indonesian|filipino|asian|pan-asian|asian "
    u"fusion|fusion|mexican|tex-mex|latin|latin american|"
    u"brazilian|peruvian|argentinian|cuban|caribbean|jamaican|cajun|creole|soul "
    u"food|southern|southwestern|californian|hawaiian|"
    u"african|ethiopian|russian|polish|hungarian|czech|scandinavian|jewish|kosher|halal|vegetarian|vegan|organic|"
    u"seafood|fish|fish & chips|fish and "
    u"chips|steak|steaks|steakhouse|steakhouses|barbecue|barbeque|bbq|burgers|burger|hamburgers|hot "
    u"dogs|pizza|pasta|noodles|ramen|sandwiches|"
    u"sandwich|salads|soups|soup|deli|delis|delicatessen|diner|diners|breakfast|brunch|breakfast & brunch|desserts|ice "
    u"cream|"
    u"bakery|coffee|coffee house|coffee & tea|tea room|tea rooms|tearoom|fast food|takeaway|take away|fine dining|"
    u"gastropub|gastropubs|brasserie|bistro|brewpub|brewpubs|brewery|buffet|gluten free|international|eclectic|local|"
    u"traditional|family|grill|wine bar|wine bars|cocktail bar|cocktail bars|sports bar|sports bars|beer "
    u"garden|karaoke|"
    u"pub|pubs|bar|bars|nightclub|nightclubs|night club|club|clubs|lounge|lounges|dance club|dance clubs|live "
    u"music|jazz|jazz & blues|comedy|"
    u"music venue|music venues|theatre|theater|theatres|cinema|cinemas|tavern|saloon|hotel|hotels|motel|motels|hostel|"
    u"hostels|inn|inns|b&b|b & b|bed & breakfast|bed and breakfast|bed & breakfasts|bed and breakfasts|guest "
    u"house|guest houses|"
    u"guesthouse|guesthouses|resort|resorts|cottage|cottages|apartments|vacation rentals|campground|campgrounds|"
    u"camping|winery|wineries|vineyard|vineyards|tasting room|"
    u"hardware|books|bookstore|bookstores|bookshop|gifts|gift shop|gift shops|antiques|bicycles|bikes|florist|florists|"
    u"flowers|jewellers|jewelers|jewelry|jewellery|toys|shoes|clothing|fashion|furniture|groceries|grocery|supermarket|"
    u"supermarkets|pets|pet shop|pet shops|pet stores|music|electronics|computers|crafts|arts & crafts|art gallery|"
    u"art galleries|galleries|gallery|museum|museums|shopping|spa|spas|day spa|day "
    u"spas|salon|salons|barber|barbers|hair salon|hair "
    u"salons|"
    u"nail salons|massage|gyms|gym|yoga|fitness|butcher|butchers|optician|opticians|dry cleaning|laundry|locksmiths|"
    u"personal injury|family law|criminal defense|criminal law|bankruptcy|immigration|estate planning|divorce|real "
    u"estate|"
    u"employment law|business law|intellectual property|tax|taxes|medical malpractice|workers' compensation|litigation|"
    u"family practice|family medicine|internal medicine|general "
    u"practice|pediatrics|paediatrics|cardiology|dermatology|"
    u"obstetrics & gynecology|gynecology|ophthalmology|optometry|psychiatry|psychology|radiology|urology|oncology|"
    u"orthopedics|orthopaedics|podiatry|chiropractor|chiropractors|orthodontist|orthodontists|neurology|surgery|"
    u"acupuncture|heating|plumbing|drain cleaning|water heaters|air conditioning|landscaping|lettings|"
    u"estate agents|property management|accounting|accountants|"
    // German
    u"deutsch|deutsche küche|deutsche|gutbürgerlich|gutbürgerliche "
    u"küche|regional|regionale küche|österreichisch|schweizer küche|schwäbisch|bayerisch|"
    u"italienisch|italienische küche|französisch|griechisch|spanisch|türkisch|chinesisch|japanisch|thailändisch|"
    u"asiatisch|indisch|mexikanisch|amerikanisch|mediterran|international|vegetarisch|fisch|wirtshaus|biergarten|"
    u"imbiss|"
    u"eiscafé|café|pizzeria|weinstube|ferienwohnung|ferienwohnungen|"
    u"elektrotechnik|elektrogeräte|haustechnik|heizung|heizungsbau|arbeitsrecht|familienrecht|mietrecht|strafrecht|"
    u"verkehrsrecht|erbrecht|steuerrecht|sozialrecht|allgemeinmedizin|orthopädie|innere medizin|frauenheilkunde|"
    u"hautarzt|kinderarzt|hno-arzt|gartenbau|glaserei|fliesenleger|blumen|bücher|schmuck|"
    // French
    u"cuisine française|cuisine "
    u"traditionnelle|traditionnelle|française|italienne|chinoise|japonaise|indienne|marocaine|libanaise|thaïlandaise|"
    u"gastronomique|bistronomique|crêperie|crêperies|brasserie|brasseries|pizzeria|pizzerias|poissons|fruits de "
    u"mer|chauffagistes|"
    u"chauffage|fromagerie|fleuristes|opticiens|bijouteries|chambres d'hôtes|gîtes|"
    // Italian, Spanish, Portuguese, Dutch
    u"cucina "
    u"italiana|pesce|osteria|osterie|enoteca|enoteche|tavola calda|bar e caffè|gelateria|gelaterie|"
    u"cafeterías|cafetería|marisquerías|marisqueiras|marisquería|arrocerías|arrocería|mesón|mesones|bares|cafés|"
    u"cocina mediterránea|tapas y raciones|asadores|heladerías|"
    u"italiaans|frans|grieks|chinees|turks|aannemers|eetcafé|lunchroom|cafetaria";

const WordTable<bool>& Table() {
    static const WordTable<bool> table = [] {
        WordTable<bool> all;
        for (const QStringView word : trades.split(u'|', Qt::SkipEmptyParts))
            all[word] = true;
        return all;
    }();
    return table;
}

} // namespace

bool IsTrade(QStringView text) {
    if (text.size() > 120)
        return false;
    if (Table().Contains(BareView(text).View()))
        return true;
    bool one = false;
    for (qsizetype begin = 0; begin < text.size();) {
        qsizetype end = begin;
        while (end < text.size() && !QStringView(u",;/|\u2022\u00B7\u203A\u00BB&").contains(text[end]))
            ++end;
        const BareView part(text.sliced(begin, end - begin));
        if (!part.View().isEmpty()) {
            if (!Table().Contains(part.View()) && (part.View().count(u' ') > 2 || !NamesBusinesses(part.View())))
                return false;
            one = true;
        }
        begin = end + 1;
    }
    return one;
}

} // namespace Brindle
