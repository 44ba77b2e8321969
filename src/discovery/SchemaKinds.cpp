#include "discovery/SchemaKinds.h"

#include "toolkit/Ascii.h"

#include <QHash>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Types that say no more than that it is a business.
constexpr QStringView generalTypes =
    u"LocalBusiness Organization Corporation Place Store Service ProfessionalService CivicStructure OnlineBusiness "
    u"OnlineStore NGO Consortium VCard h-card h-org hcard vcard BusinessEntity Business Company "
    u"LocationOfSalesOrServiceProvisioning EmergencyService TouristAttraction EventVenue FinancialService "
    u"MedicalOrganization EntertainmentBusiness SportsActivityLocation";

constexpr QStringView tradeTypes =
    // Local businesses.
    u"AnimalShelter ArchiveOrganization AutomotiveBusiness AutoBodyShop AutoDealer AutoPartsStore AutoRental "
    u"AutoRepair AutoWash GasStation MotorcycleDealer MotorcycleRepair ChildCare Dentist DryCleaningOrLaundry "
    u"FireStation Hospital PoliceStation EmploymentAgency AdultEntertainment AmusementPark ArtGallery Casino "
    u"ComedyClub MovieTheater NightClub AccountingService AutomatedTeller BankOrCreditUnion InsuranceAgency "
    u"FoodEstablishment Bakery BarOrPub Brewery CafeOrCoffeeShop Distillery FastFoodRestaurant IceCreamShop Restaurant "
    u"Winery GovernmentOffice PostOffice HealthAndBeautyBusiness BeautySalon DaySpa HairSalon HealthClub NailSalon "
    u"TattooParlor HomeAndConstructionBusiness Electrician GeneralContractor HVACBusiness HousePainter Locksmith "
    u"MovingCompany Plumber RoofingContractor InternetCafe LegalService Attorney Notary Library LodgingBusiness "
    u"BedAndBreakfast Campground Hostel Hotel Motel Resort SkiResort VacationRental MedicalBusiness CommunityHealth "
    u"Dermatology DietNutrition Emergency Geriatric Gynecologic MedicalClinic CovidTestingFacility Midwifery Nursing "
    u"Obstetric Oncologic Optician Optometric Otolaryngologic Pediatric Pharmacy Physician IndividualPhysician "
    u"PhysiciansOffice Physiotherapy PlasticSurgery Podiatric PrimaryCare Psychiatric PublicHealth DiagnosticLab "
    u"VeterinaryCare RadioStation RealEstateAgent RecyclingCenter SelfStorage ShoppingCenter BowlingAlley ExerciseGym "
    u"GolfCourse PublicSwimmingPool SportsClub StadiumOrArena TennisComplex BikeStore BookStore ClothingStore "
    u"ComputerStore ConvenienceStore DepartmentStore ElectronicsStore Florist FurnitureStore GardenStore GroceryStore "
    u"HardwareStore HobbyShop HomeGoodsStore JewelryStore LiquorStore MensClothingStore MobilePhoneStore "
    u"MovieRentalStore MusicStore OfficeEquipmentStore OutletStore PawnShop PetStore ShoeStore SportingGoodsStore "
    u"TireShop ToyStore WholesaleStore TelevisionStation TouristInformationCenter TravelAgency "
    // Organisations.
    u"Airline EducationalOrganization CollegeOrUniversity ElementarySchool HighSchool MiddleSchool Preschool School "
    u"GovernmentOrganization LibrarySystem NewsMediaOrganization SearchRescueOrganization SportsOrganization "
    u"WorkersUnion "
    // Places where somebody can be reached.
    u"Airport Aquarium BoatTerminal BusStation Cemetery Crematorium GovernmentBuilding CityHall Courthouse "
    u"DefenceEstablishment Embassy LegislativeBuilding Museum MusicVenue ParkingFacility PerformingArtsTheater "
    u"PlaceOfWorship BuddhistTemple Church CatholicChurch HinduTemple Mosque Synagogue RVPark TrainStation Zoo "
    u"ApartmentComplex";

enum class TypeSort : quint8 { Unknown, General, Trade, Person, List, ListEntry, Trail };

QString Folded(QStringView name) {
    QString folded(name.size(), Qt::Uninitialized);
    QChar* end = folded.data();
    for (const QChar c : name)
        if (c != u'-' && c != u'_' && c != u' ')
            *end++ = c.unicode() < 0x80 ? Ascii::Lower(c) : c.toLower();
    folded.truncate(end - folded.constData());
    return folded;
}

QHash<QString, TypeSort> AllTypes() {
    QHash<QString, TypeSort> types;
    const auto add = [&types](QStringView names, TypeSort sort) {
        for (const QStringView name : names.split(u' ', Qt::SkipEmptyParts))
            types.insert(Folded(name), sort);
    };
    add(tradeTypes, TypeSort::Trade);
    add(generalTypes, TypeSort::General);
    add(u"Person Individual", TypeSort::Person);
    add(u"ItemList OfferCatalog SearchResultsPage CollectionPage", TypeSort::List);
    add(u"ListItem", TypeSort::ListEntry);
    add(u"BreadcrumbList Breadcrumb", TypeSort::Trail);
    return types;
}

TypeSort SortOf(const QString& type) {
    static const QHash<QString, TypeSort> all = AllTypes();
    return all.value(Folded(LocalName(type)), TypeSort::Unknown);
}

QHash<QString, SchemaProperty> AllProperties() {
    struct Row {
        SchemaProperty Means;
        QStringView Names;
    };
    static constexpr Row rows[] = {
        {SchemaProperty::Name, u"name fn"},
        {SchemaProperty::OtherName, u"legalName alternateName org organizationName nickname title"},
        {SchemaProperty::Telephone, u"telephone tel phone phoneNumber telephoneNumber hasTelephone"},
        {SchemaProperty::Fax, u"faxNumber fax"},
        {SchemaProperty::Email, u"email hasEmail"},
        {SchemaProperty::Url, u"url page hasURL website"},
        {SchemaProperty::SameAs, u"sameAs"},
        {SchemaProperty::Address, u"address adr hasAddress"},
        {SchemaProperty::Street, u"streetAddress"},
        {SchemaProperty::StreetMore, u"extendedAddress"},
        {SchemaProperty::PostOfficeBox, u"postOfficeBox postOfficeBoxNumber"},
        {SchemaProperty::City, u"addressLocality locality"},
        {SchemaProperty::State, u"addressRegion region"},
        {SchemaProperty::PostalCode, u"postalCode"},
        {SchemaProperty::Country, u"addressCountry countryName"},
        {SchemaProperty::Category, u"servesCuisine category medicalSpecialty industry"},
        {SchemaProperty::Map, u"hasMap map maps"},
        {SchemaProperty::ContactPoint, u"contactPoint contactPoints"},
        {SchemaProperty::Location, u"location"},
        {SchemaProperty::Entry, u"itemListElement"},
        {SchemaProperty::EntryItem, u"item"},
        {SchemaProperty::Position, u"position"},
        {SchemaProperty::PageSubject, u"mainEntity about hasPart itemReviewed"},
        {SchemaProperty::Owner,
         u"publisher author creator provider seller brand manufacturer parentOrganization memberOf member worksFor "
         u"affiliation sourceOrganization copyrightHolder organizer performer sponsor funder hiringOrganization "
         u"reviewedBy maintainer accountablePerson editor contributor founder employee alumniOf offeredBy agent "
         u"recipient reviewer contact founders employees owner broadcaster productionCompany attendee"},
    };
    QHash<QString, SchemaProperty> properties;
    for (const Row& row : rows)
        for (const QStringView name : row.Names.split(u' ', Qt::SkipEmptyParts))
            properties.insert(Folded(name), row.Means);
    properties.insert(QString(), SchemaProperty::WholeText);
    return properties;
}

} // namespace

QStringView LocalName(QStringView name) {
    while (name.endsWith(u'/') || name.endsWith(u'#'))
        name.chop(1);
    const auto isEnd = [](QChar c) { return c == u'/' || c == u'#' || c == u':'; };
    qsizetype at = name.size();
    while (at > 0 && !isEnd(name[at - 1]))
        --at;
    return name.sliced(at);
}

SchemaKind KindOf(const QStringList& types) {
    SchemaKind kind = SchemaKind::Other;
    for (const QString& type : types) {
        switch (SortOf(type)) {
        case TypeSort::General:
        case TypeSort::Trade:
            return SchemaKind::Business;
        case TypeSort::Person:
            kind = SchemaKind::Person;
            break;
        case TypeSort::Trail:
            kind = SchemaKind::Trail;
            break;
        case TypeSort::List:
            if (kind == SchemaKind::Other)
                kind = SchemaKind::List;
            break;
        case TypeSort::ListEntry:
            if (kind == SchemaKind::Other)
                kind = SchemaKind::ListEntry;
            break;
        case TypeSort::Unknown:
            break;
        }
    }
    return kind;
}

QString TradeOf(const QStringList& types) {
    for (const QString& type : types) {
        if (SortOf(type) != TypeSort::Trade)
            continue;
        const QStringView name = LocalName(type);
        QString words;
        for (qsizetype i = 0; i < name.size(); ++i) {
            const bool begins =
                i > 0 && name[i].isUpper() && (name[i - 1].isLower() || (i + 1 < name.size() && name[i + 1].isLower()));
            if (begins)
                words.append(u' ');
            words.append(name[i]);
        }
        words.replace(u" Or "_s, u" or "_s);
        words.replace(u" And "_s, u" and "_s);
        return words;
    }
    return {};
}

const KnownTypes::Meaning& KnownTypes::Of(const QStringList& types) {
    constexpr size_t most = 16;
    const auto known =
        std::find_if(known_.begin(), known_.end(), [&types](const Meaning& one) { return one.Types == types; });
    if (known != known_.end())
        return *known;
    Meaning meaning{types, {}, KindOf(types), TradeOf(types)};
    for (const QString& type : types)
        meaning.LocalNames.append(LocalName(type).toString());
    if (known_.size() < most)
        return known_.emplace_back(std::move(meaning));
    oldest_ = (oldest_ + 1) % most;
    return known_[oldest_] = std::move(meaning);
}

SchemaProperty MeaningOf(QStringView name) {
    static const QHash<QString, SchemaProperty> all = AllProperties();
    return all.value(Folded(LocalName(name)), SchemaProperty::None);
}

} // namespace Brindle
