#include "discovery/Labels.h"

#include "discovery/AnyPageText.h"
#include "discovery/WordTable.h"
#include "toolkit/Ascii.h"

#include <QString>
#include <QStringList>

#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Row {
    HintSet Hints;
    const char16_t* Words; // parted by blanks; in labels by "|"
};

constexpr HintSet Of(Hint hint) {
    return static_cast<HintSet>(hint);
}

// Parts of class names, ids and properties.
constexpr Row nameParts[] = {
    {Of(Hint::Name),
     u"name fn companyname businessname bizname firmenname firmname placename nombre nom naam nome nazwa "
     u"nazev firma raison denominazione ragionesociale"},
    {Of(Hint::Title), u"title titel titre titulo titolo heading headline header caption tytul"},
    {Of(Hint::Phone), u"phone tel telephone telefon telefono telefone phonenumber fon telefoon mobilephone "
                      u"cellphone handy rufnummer phones telnumber call tlf puhelin telefonnummer phoneno"},
    {Of(Hint::Fax), u"fax telefax faxnumber faks"},
    {Of(Hint::Mail), u"email mail mailto emails courriel correo"},
    {Of(Hint::Website), u"website web homepage www site webseite webpage url siteweb sitio"},
    {Of(Hint::Street), u"street streetaddress strasse str rue calle via ulica straat thoroughfare addressline address1 "
                       u"gatuadress logradouro gade"},
    {Of(Hint::City), u"city locality addresslocality town ort stadt ville ciudad citta cidade plaats miasto mesto obec "
                     u"neighborhood neighbourhood loc woonplaats municipio postort localita district suburb commune"},
    {Of(Hint::State), u"region addressregion province state bundesland provincia county estado"},
    {Of(Hint::PostalCode), u"postalcode postcode zip zipcode plz cap cep cp codepostal psc"},
    {Of(Hint::Country), u"country addresscountry countryname land pays pais"},
    {Of(Hint::Address), u"address adr addr adresse direccion indirizzo endereco adres adresa anschrift location "
                        u"adress osoite addresses locations standort"},
    {Of(Hint::Category), u"category categories cuisine cuisines branche branchen rubrique rubric categoria categorie "
                         u"kategorie kategoria kategorija trade trades industry sector activity activite specialty "
                         u"speciality specialties tags tag services keywords businesstype branch gewerbe "
                         u"bransch toimiala categorias type spec specialization specialisation fachrichtung fachgebiet "
                         u"especialidad spécialité subcategory"},
    {Of(Hint::Map), u"map maps karte directions route mapa plan geo"},
    {Of(Hint::Hours), u"hours opening openinghours oeffnungszeiten open horaires horario orari openingstijden closed "
                      u"openuntil"},
    {Of(Hint::Rating), u"rating ratings stars star score bewertung rate valoracion sterne"},
    {Of(Hint::Review), u"review reviews snippet opinion opinions testimonial feedback reviewcount votes vote likes"},
    {Of(Hint::Price), u"price prices preis prix precio prezzo prijs cena pricerange cost salary"},
    {Of(Hint::Date), u"date time datetime published datum posted timestamp datepublished calendar"},
    {Of(Hint::Author), u"author byline writer username user autor auteur poster"},
    {Of(Hint::Description),
     u"description desc excerpt summary teaser snippet about intro reviewbody slogan abstract blurb"},
    {Of(Hint::Distance), u"distance dist km entfernung miles abstand"},
    {Of(Hint::Business), u"business company listing restaurant hotel venue poi organization biz vcard hcard dealer "
                         u"store shop firm eintrag company merchant provider eatery establishment place places "
                         u"localbusiness member vendor supplier office clinic practice doctor lawyer unternehmen "
                         u"entreprise empresa azienda bedrijf podnik cafe bar dentist treffer agency"},
    {Of(Hint::Product), u"product products cart basket buy sku addtocart warenkorb produkt produit producto prodotto "
                        u"artikelnr add2cart wishlist price2 deal offer"},
    {Of(Hint::Article), u"article post blog entry news story comment comments thread topic forum reply message hentry "
                        u"permalink recipe rezept recette gallery photo video album episode lesson course publication "
                        u"paper chapter book"},
    {Of(Hint::Job), u"job jobs vacancy career stelle stellenangebot emploi empleo lavoro position"},
    {Of(Hint::Event), u"event events veranstaltung termin evento concert show agenda tribe"},
    {Of(Hint::Person), u"person people staff team employee faculty profile member author"},
    {Of(Hint::Aside),
     u"nav navigation menu sidebar footer breadcrumb breadcrumbs aside pagination pager submenu topbar "
     u"navbar subnav toolbar dropdown cookie header masthead widget"},
    {Of(Hint::Advert), u"ad ads advert advertisement sponsored sponsor anzeige promo banner adsense werbung promoted"},
    {Of(Hint::Similar), u"related similar recent popular recommended nearby viewed trending latest"},
};

// Labels before a value or in the cell before it.
constexpr Row labels[] = {
    {Of(Hint::Phone),
     u"tel|tel no|t|p|ph|ph no|phone|phone no|phone number|telephone|telephone no|telephone number|phones|call|call us|"
     u"mobile|mobile no|mob|m|cell|cell phone|landline|office|toll free|toll-free|hotline|contact number|contact no|"
     u"telefon|telefonnummer|tel-nr|tel.-nr|telefon-nr|fon|rufnummer|mobil|mobiltelefon|handy|festnetz|telefon und fax|"
     u"téléphone|tél|telephone|portable|gsm|mobile|"
     u"teléfono|telefono|telf|tfno|tlf|teléfonos|móvil|celular|cel|"
     u"telèfon|mòbil|telefone|telemóvel|telemovel|fone|celular|whatsapp|"
     u"cellulare|cell|tel./fax|telefoon|telefoonnummer|tel.nr|mobiel|"
     u"tel. kom|kom|telefon komórkowy|nr tel|numer telefonu|tel. stacjonarny|"
     u"telefonní číslo|mobilní telefon|telefón|mobilný telefón|telefonszám|"
     u"telefonul|mobiltelefon|telefonnr|tlf.nr|puhelin|puh|puhelinnumero|gsm|telefoninumber|mobiiltelefon|tālrunis|"
     u"telefonas|telefon no|cep|cep telefonu|gsm|τηλέφωνο|τηλ|κινητό|"
     u"телефон|тел|телефоны|моб|мобильный|телефону|мобільний|тел./факс|мобилен|телефони|мобилни|"
     u"電話|電話番号|お電話|携帯|电话|电话号码|联系电话|手机|連絡電話|聯絡電話|電話號碼|전화|전화번호|연락처|휴대폰|"
     u"대표전화|"
     u"الهاتف|هاتف|تلفون|جوال|טלפון|טל|נייד|تلفن|โทร|โทรศัพท์|เบอร์โทร|điện thoại|đt|sđt|di động|hotline|"
     u"telp|telepon|no telp|no tel|फ़ोन|फोन|मोबाइल"},
    {Of(Hint::Fax), u"fax|f|fax no|fax number|telefax|faxnummer|fax-nr|télécopie|télécopieur|faks|факс|φαξ|ファックス|"
                    u"ｆａｘ|传真|傳真|팩스|فاكس|פקס|فکس|โทรสาร|แฟกซ์|faksi|faksas|fakss|faxnr|numer faksu|फ़ैक्स"},
    {Of(Hint::Register),
     u"reg|reg no|reg. no|reg nr|reg. nr|registration|registration no|registration number|register no|company "
     u"no|company number|"
     u"company registration|uen|licence|licence no|licence number|license|license no|license number|lic no|lic. "
     u"no|vat|vat no|"
     u"vat number|vat id|tax "
     u"id|ein|abn|acn|nzbn|gstin|gst|cin|ust-id|ust-idnr|ust-id-nr|uid|hrb|handelsregister|siren|siret|"
     u"rcs|tva|n° tva|cif|nif|cnpj|rut|ruc|cuit|nit|rfc|p.iva|p. iva|partita "
     u"iva|rea|kvk|kvk-nummer|btw|btw-nummer|nip|regon|"
     u"krs|ičo|ico|ič|dič|adószám|cégjegyzékszám|cui|cvr|cvr-nr|cvr-nummer|org.nr|org. nr|orgnr|organisationsnummer|"
     u"organisasjonsnummer|y-tunnus|registrikood|reģistrācijas numurs|reģ. nr|įmonės "
     u"kodas|αφμ|α.φ.μ|инн|огрн|едрпоу|єдрпоу|"
     u"егрпоу|еик|oib|vergi no|mersis|法人番号|統一編號|统一社会信用代码|사업자등록번호|ח.פ"},
    {Of(Hint::Mail),
     u"email|e-mail|mail|e|e-mail address|email address|e-mailadresse|courriel|mél|correo|correo electrónico|"
     u"correu|e-mail-adresse|posta elettronica|e-post|epost|sähköposti|eposta|e-posta|ηλεκτρονικό ταχυδρομείο|"
     u"эл. почта|электронная почта|почта|имейл|ел. пошта|メール|メールアドレス|電子メール|邮箱|电子邮件|電郵|"
     u"이메일|البريد الإلكتروني|בريد|דוא\"ל|אימייל|ایمیل|อีเมล|thư điện tử|surel|ईमेल|el. paštas|e-pasts"},
    {Of(Hint::Website),
     u"website|web|web site|homepage|home page|www|url|w|internet|webseite|internetseite|site|site web|"
     u"site internet|sitio web|página web|pàgina web|página|sito|sito web|site-ul|strona|strona www|"
     u"www stránky|webové stránky|honlap|weboldal|hemsida|hjemmeside|nettside|kotisivu|kotisivut|"
     u"koduleht|mājaslapa|svetainė|web sitesi|ιστοσελίδα|сайт|веб-сайт|уебсайт|ホームページ|ウェブサイト|"
     u"公式サイト|网址|网站|網址|網站|홈페이지|웹사이트|الموقع|الموقع الإلكتروني|אתר|אתר אינטרנט|وب سایت|"
     u"เว็บไซต์|trang web|situs|situs web|वेबसाइट"},
    {Of(Hint::Address),
     u"address|addr|location|adresse|anschrift|standort|adr|domicilio|dirección|direccion|ubicación|adreça|endereço|"
     u"morada|localização|indirizzo|sede|adres|bezoekadres|lokalizacja|adresa|adresă|cím|adress|besöksadress|"
     u"besøksadresse|"
     u"osoite|käyntiosoite|aadress|adrese|adresas|adresi|adres bilgisi|διεύθυνση|адрес|адреса|住所|所在地|地址|주소|"
     u"العنوان|כתובת|آدرس|ที่อยู่|địa chỉ|alamat|पता|a|naslov"},
    {Of(Hint::Street), u"street|straße|strasse|rue|calle|via|ulica|straat|улица|utca|gata"},
    {Of(Hint::City),
     u"city|town|city/town|ort|stadt|ville|ciudad|localidad|población|città|comune|località|cidade|plaats|"
     u"woonplaats|miasto|miejscowość|město|obec|mesto|helység|település|oraș|oras|ort|by|kaupunki|"
     u"şehir|il|πόλη|город|місто|град|市区町村|都市|城市|도시|المدينة|עיר|شهر|kota|neighborhood|"
     u"neighbourhood|quartier|stadtteil|thành phố|linn|miestas"},
    {Of(Hint::State),
     u"state|province|region|county|bundesland|région|département|provincia|estado|región|regione|regio|"
     u"provincie|województwo|kraj|okres|megye|județ|län|fylke|lääni|il|область|регион|都道府県|省|省份"},
    {Of(Hint::PostalCode),
     u"zip|zip code|postcode|postal code|post code|plz|postleitzahl|code postal|cp|código postal|"
     u"cap|cep|c.p|kod pocztowy|psč|irányítószám|cod poștal|postnummer|postnr|postinumero|posta kodu|"
     u"τ.κ|pašto kodas|pasta indekss|indeks|sihtnumber|poštová smerovacie číslo|poštni broj|poštanski broj|індекс|"
     u"поштовий індекс|пощенски код|pin|pin code|pincode|індекс|индекс|почтовый "
     u"индекс|郵便番号|邮编|邮政编码|郵遞區號|우편번호"},
    {Of(Hint::Country), u"country|land|pays|país|paese|kraj|země|ország|țară|maa|ülke|χώρα|страна|国|国家|국가"},
    {Of(Hint::Category),
     u"category|categories|categorized under|filed under|listed under|listed "
     u"in|cuisine|cuisines|type|industry|sector|business type|specialty|specialties|speciality|trade|"
     u"services|kategorie|kategorien|branche|branchen|tätigkeit|rubrik|gewerbe|leistungen|küche|catégorie|catégories|"
     u"activité|activités|secteur|rubrique|cuisine|spécialités|categoría|categorías|actividad|sector|rubro|categoria|"
     u"categorie|attività|settore|rubriek|categorieën|branża|kategoria|kategorie|obor|činnost|kategória|tevékenység|"
     u"categorie|domeniu|bransch|kategori|branche|kategoria|toimiala|tegevusala|kategorija|nozare|veikla|sektör|"
     u"κατηγορία|категория|рубрика|отрасль|категорія|主营|主营产品|经营范围|カテゴリ|カテゴリー|業種|ジャンル|分类|"
     u"类别|行业|類別|업종|"
     u"카테고리|"
     u"الفئة|التصنيف|קטגוריה|תחום|دسته|หมวดหมู่|ประเภท|danh mục|ngành nghề|kategori|श्रेणी"},
    {Of(Hint::Name),
     u"name|company|company name|business|business name|firma|firmenname|unternehmen|nom|entreprise|société|"
     u"raison sociale|nombre|empresa|razón social|nome|azienda|ragione sociale|naam|bedrijf|bedrijfsnaam|"
     u"nazwa|nazwa firmy|název|jméno|názov|név|cégnév|nume|denumire|namn|företag|navn|nimi|yritys|ad|"
     u"firma adı|επωνυμία|όνομα|название|наименование|компания|назва|име|会社名|店名|店舗名|名称|名前|企業名|"
     u"公司名称|公司|名稱|상호|업체명|회사명|الاسم|اسم الشركة|שם|שם העסק|نام|ชื่อ|tên|tên công ty|nama|नाम"},
    {Of(Hint::Hours),
     u"hours|opening hours|open|business hours|öffnungszeiten|geöffnet|horaires|heures d'ouverture|horario|"
     u"horarios|orari|orario|orari di apertura|openingstijden|godziny otwarcia|otevírací doba|nyitvatartás|"
     u"öppettider|åbningstider|åpningstider|aukioloajat|çalışma saatleri|часы работы|режим работы|営業時間|"
     u"open now|closed now|now open|closes soon|opens soon|jetzt geöffnet|jetzt geschlossen|geschlossen|nu open|nu "
     u"gesloten|"
     u"gesloten|ouvert|ouvert maintenant|fermé|fermé maintenant|abierto|abierto ahora|cerrado|cerrado "
     u"ahora|aberto|aberto agora|"
     u"fechado|aperto|aperto ora|chiuso|chiuso ora|öppet|öppet nu|stängt|åpent|åpent nå|stengt|åben|åben "
     u"nu|lukket|avoinna|"
     u"suljettu|otwarte|otwarte "
     u"teraz|zamknięte|otevřeno|zavřeno|nyitva|zárva|deschis|închis|açık|kapalı|открыто|закрыто|"
     u"відчинено|зачинено|ανοιχτό|κλειστό|営業中|营业中|營業中|영업중|"
     u"buka|buka sekarang|tutup|เปิดอยู่|ปิดแล้ว|đang mở cửa|đã đóng cửa|ανοιχτό τώρα|κλειστό τώρα|şu an açık|şu an kapalı|"
     u"otvoreno|zatvoreno|отворено|затворено|פתוח|פתוח עכשיו|סגור|مفتوح|مفتوح الآن|مغلق|deschis acum|영업 "
     u"종료|круглосуточно|"
     u"休息中|24 hours|open 24 hours|定休日|营业时间|營業時間|영업시간|ساعات العمل|שעות פתיחה|เวลาทำการ|giờ mở cửa|jam "
     u"buka|program"},
    {Of(Hint::Person),
     u"contact|contact person|owner|manager|ansprechpartner|inhaber|geschäftsführer|contacto|contatto|"
     u"contactpersoon|osoba kontaktowa|代表者|担当者|联系人|담당자|контактное лицо|director|gérant"},
    {Of(Hint::Price), u"price|price range|preis|preise|prix|precio|prezzo|prijs|cena|цена|料金|价格|가격|salary|gehalt|"
                      u"salaire|salario|予算|fees|kosten"},
    {Of(Hint::Date),
     u"date|datum|posted|published|veröffentlicht|publié|publicado|pubblicato|gepubliceerd|opublikowano|"
     u"дата|日付|日期|updated|deadline|when|wann|start date|founded|est|established|since|seit|gegründet|member "
     u"since|mitglied seit|"
     u"updated|last updated|aktualisiert|stand|membre depuis|socio desde|membro dal|lid sinds|depuis|desde|dal|sinds"},
    {Of(Hint::Rating), u"rating|ratings|bewertung|note|valoración|voto|beoordeling|ocena|оценка|評価|评分|평점|score"},
    {Of(Hint::Review), u"reviews|bewertungen|avis|opiniones|recensioni|opinie|отзывы|口コミ|评论|리뷰"},
    {Of(Hint::Map),
     u"map|maps|view map|show map|view on map|show on map|see map|directions|get directions|route|karte|stadtplan|"
     u"auf karte anzeigen|auf der karte|karte anzeigen|route planen|routenplaner|plan|voir le plan|voir plan|plan "
     u"d'accès|"
     u"voir la carte|ver mapa|ver en el mapa|ver en mapa|ver no mapa|mapa|vedi mappa|mostra mappa|bekijk kaart|"
     u"toon op kaart|toon kaart|pokaż na mapie|zobacz na mapie|zobrazit na mapě|ukázat na mapě|vis kart|vis på kort|"
     u"visa karta|"
     u"itinéraire|cómo llegar|mappa|indicazioni|kaart|mapka|карта|на "
     u"карте|地図|地図を見る|地图|地圖|查看地圖|약도|지도|지도보기"},
    {Of(Hint::Distance), u"distance|entfernung|distancia|distanza|afstand|odległość|расстояние|距離|距离|거리"},
};

// What lists of businesses are about; words that begin so count.
constexpr auto businessStems =
    u"restaurant restaurang restauracj restaurac ristorant ресторан εστιατόρι étterem éttermek lokanta hotel hôtel "
    u"albergh отел гостиниц pension hostel caf kaffee kawiarn кафе bistro bar bars pub pubs kneipe bakery bakeries "
    u"bäcker bäckerei boulanger panader padaria panifici piekarni пекарн plumb klempner sanitär plombier fontaner "
    u"idraulic encanador loodgieter hydraulik instalatér vízvezeték сантехник dentist zahnarzt zahnärzt dentiste "
    u"tandarts dentysta zubař fogorvos стоматолог tandläkar tandlæge elektro lawyer attorney solicitor rechtsanwalt "
    u"rechtsanwält avocat abogado avvocat advogad advocat adwokat právník ügyvéd адвокат юрист electrician elektrik "
    u"électric electric elettric электрик doctor arzt ärzte médecin médico medici lekarz lékař orvos врач clinic "
    u"klinik cliniqu clínic pharmac apotheke farmaci apteka lékárna gyógyszertár аптек hairdresser friseur coiffeur "
    u"peluquer parrucchier kapper fryzjer kadeřni fodrász парикмахер salon beauty kosmetik garage werkstatt mechanic "
    u"autohaus dealer dealers medizin medicina médecine kardiolog cardiolog dermatolog gynäkolog gynekolog ginecolog "
    u"gynécolog urolog neurolog orthopäd orthopéd orthoped ortoped pädiatr pediatr pédiatr ophtalmo ophthalmo oftalmo "
    u"augenarzt psychiatr psycholog psychotherap psychothérap radiolog chirurg surgeon internist généralist taxi "
    u"exhibitor aussteller exposant expositor espositor wystawc vystavovat kiállít utställare udstiller katılımcı "
    u"экспонент εκθέτ company companies business businesses firm firms firma firmen firmy firem entreprise société "
    u"empresa aziend impres bedrijf bedrijven cég cégek företag virksomhed bedrift yritys yrityks ettevõt uzņēmum "
    u"įmon şirket firmalar επιχειρήσε компани фирм предприят підприємств directory directories branchenbuch "
    u"branchenverzeichnis annuaire directorio elenco gids katalog katalóg rejstřík cégkereső katalogus lista listing "
    u"listings verzeichnis gewerbe handwerker yellowpages gelbe pages dienstleister supplier suppliers provider "
    u"contractor contractors store stores shops geschäfte läden magasins tiendas negozi winkels sklep obchod üzlet "
    u"agency agencies agentur agence agencia agenzi builder builders roofing dachdecker maler painter tischler "
    u"schreiner carpenter architect architekt notar steuerberater accountant physio optiker optician tierarzt "
    u"veterinar veterinär vet gym fitness florist blumen fleuriste school schule kindergarten church museum venues "
    u"places nightlife clubs unterkünfte accommodation wineries vineyard breweries inns lodging breakfast physician "
    u"hospital jewel butcher eateries dining cottages lettings gasthof gasthaus agriturism weingut winery brewery "
    u"immobilienmakler realtor estate insurance versicherung stomatolog stomatološ zubár zubar зъболек зубн "
    u"стоматологи tannleg hammaslääk diş odontolog odontoiatr odontó οδοντίατρ οδοντιατρ υδραυλικ ηλεκτρολόγ δικηγόρ "
    u"εστιατόρ ξενοδοχ γιατρ φαρμακ κομμωτήρ συνεργεί instalator inštalatér vodoinstalat rörmok rørlegg putkimi "
    u"putkiliik vvs byggefirm byggfirm gasfitter canalizador serralh desentupid chaveir restauran reštaurác ravintol "
    u"étterm vendéglő trattori pizzeri pizzeria takeaway gastronom сантехнік водопровод ресторан рестoран кав'ярн "
    u"салон автосервіс автосервис юридичн нотаріус нотариус odvetnik odvjetnik advokát advokat advocaat avukat "
    u"solicitor notair notari notaris notario huisarts apoteket apotek apoteekki eczane farmàci ljekarn lekarn "
    u"lekáreň lekáren farmacj patika drogerie kuaför frisør frisör kampaamo kaderník kadeřnic frizer frizerski "
    u"coiffur peluqueri barbearia barber hairdress nail spa massage physiotherap physiothérap fisioterap fizjoterap "
    u"osteopat kinésithérap chiropract vétérinair veterinari dierenarts weterynarz eläinlääk dyrlæg carpint menuisi "
    u"charpent falegnam stolarz truhlář asztalos snickar tømrer kirvesmi timmerman couvreur tejad dekarz pokrývač "
    u"tetőfed dakdekker taklägg tømrer schilder peintr pintor imbianchin lakier malíř festő målare maler maalari "
    u"elektriker elektryk elettricist sähkö elektromont villanyszerel электромонтаж mover movers packers umzug "
    u"déménag mudanz traslochi verhuis przeprowadz stěhov költöz flyttfirm muutto перевоз immobilier inmobiliari "
    u"immobiliar makelaar nieruchomoś realitn ingatlan mäklar megler kiinteistö недвижим assuranc seguros assicuraz "
    u"verzeker ubezpiecz pojišť biztosít försäkr forsikr vakuut страхов comptable contable commercialist boekhoud "
    u"księgow účetn könyvel redovis regnskap tilitoimist бухгалт webdesign werbeagentur printers druckerei imprimeri "
    u"imprenta tipografi drukarni tiskárn nyomda tryckeri kfz carrosseri autoscuol fahrschule autoécole autoskol "
    u"autoservis autoservice autowerkstatt autorepair officin taller talleres warsztat autóműhely bilverkstad "
    u"bilverksted autokorjaam oto servis bicycl fahrrad catering caterer caterers florist florarie kwiaciarn květin "
    u"virágbolt blomster kukkakaup цветы juwelier bijouteri joyeri gioielleri zlatni ékszer klenotn schmuck "
    u"bäckereien bageri leipomo pékség pekárn pekařstv konditor metzgerei fleischer boucheri carnicer macelleri "
    u"slagerij rzeźnik řeznic hentes slakter рестораны кафе бар отели гостиницы restoran dokter klinik apotek bengkel "
    u"stomatoloz bank attraction locksmith serrur schlüsseldienst cerrajer fabbri cleaner reinigung locations "
    u"branches filialen practices repair physician roofers roofer cleaning coworking vets butcher photograph "
    u"tradesmen tradespeople designers developers logistic nurseries nursery carehome homecare hospital banks gyms "
    u"petrol landscap gardener gardeners therapist hvac installer installers engineers stockist retailer retailers "
    u"distributor franchis manufactur exporter exporters charities consultant consultants consulting tailors jeweller "
    u"jeweler tattoo universit college colleges libraries campsite funeral surveyor advisor advisors adviser advisers "
    u"broker brokers breweries podiatr midwives midwife audiolog laborator handymen handyman remodel storage yoga "
    u"studios clinicians nonprofits anwält autowerkstätt hausarzt hausärzt gebäudereinig tierärzt mitgliedsbetriebe "
    u"mitgliederverzeichnis metzger fotograf spedition kindergärten kita kitas pflegedienst pflegeheim krankenhaus "
    u"krankenhäus banken kirchen autohändler tankstell gärtner gartenbau heizungsbau solaranlag händler fachhändler "
    u"händlersuche filialfinder vertragshändler vertragswerkst hersteller lieferant vereine berater reisebüro "
    u"heilpraktik hebamme nagelstudio bestatter sachverständig baumarkt baumärkte gaststätt wirtshaus ferienwohnung "
    u"weingüt bauunternehm schlosser fliesenleger installateur ordination betriebe werkstätt kanzlei praxen opticien "
    u"boucher photographe banques crèche écoles lycée ambulanc hôpita ehpad chauffagist maçons maçon jardinier "
    u"paysagist nettoyage ostéopath infirmi adhérent artisan professionnel traiteur cafés camping gîtes gîte "
    u"concessionnair revendeur fabricant grossist contador asesor gestor ópticas óptica fotógraf arquitect psicólog "
    u"bancos colegios guarder autoescuel hospita residencia jardiner limpieza sucursal ferreter gimnasio gasoliner "
    u"reformas construc proveedor distribuid plomer mecánic mecânic consultorio comercios cafeter pizzer contabil "
    u"cabeleir eletric hotéis farmáci imobili cartóri óticas açougue floricultur arquitet escolas creches autoescol "
    u"hospitais marceneir mudança limpeza lojas academia concession fornecedor salões oficinas escritóri notai ottici "
    u"ottica fioristi fioraio architett psicolog banche scuole asili ospedal giardinier pulizie vendita palestre "
    u"palestra fornitor rivenditor estetist carrozzer gommist edilizi elektricien bakkers slagers bloemist fotografen "
    u"scholen rijschol ziekenhui slotenmak hovenier schoonmaak fysiotherap sportschol leverancier aannemer "
    u"zorginstelling bilverkstä läkare läkar vårdcentral arkitekt psykolog banker skolor förskol trafikskol sjukhus "
    u"låssmed trädgård städfirm butiker butik återförsälj leverantör autoværksted læger læge revisor ejendomsmægl "
    u"køreskol butikker medlemsvirksom forhandler håndværk eiendomsmegl leger bakeri veterinær håndverk asianajaj "
    u"lääkäri apteek valokuva arkkiteht myymälä rakennusliik jälleenmyy autohuol elektryc dentyści stomatolodzy "
    u"stomatolodz adwokac radca radcy hydraulic apteki optycy optyk psycholodzy przedszkol szkoły szpital przychodni "
    u"ślusar malarz ogrodni sprzątan siłowni dostawc gabinet kancelar biura mechanicy mechanik instalatéř lékárn "
    u"notář notáři školy nemocnic zámečni prodejn dodavatel ordinac kanceláři kaderníct lekári lekárne účtovní "
    u"predajn autószerel vízszerel szálloda szállodá közjegyz fotós állatorv építész pszicholó iskolák kórház boltok "
    u"vállalkoz avocați imobiliar brutări arhitec psiholog asigurări bănci școli spital furnizor cabinete λογιστ "
    u"μεσιτικ συμβολαιογράφ φωτογράφ κτηνίατρ αρχιτέκτ ψυχολόγ καταστήματα κατάστημα εταιρεί εταιρίες τράπεζ σχολεί "
    u"νοσοκομ tesisat doktor oteller muhasebe emlak noterler fırın veteriner mimarlar sigorta bankalar okullar "
    u"hastane mağazalar mağaza bayiler bayi şubeler врачи врача фотограф ветеринар архитектор психолог банки школы "
    u"школ больниц поликлин магазин поставщик дилеры дилер клиник организац лікар готел нерухом електрик перукар "
    u"компан школи електротехн автосервиз фризьор лекари хотел счетовод фирми električar odvjetni liječni računovod "
    u"nekretnin bilježnik trgovin tvrtke tvrtka obrtni pengacara akuntan cabang sekolah kantor masakan";
constexpr auto businessMarks =
    u"レストラン|飲食店|居酒屋|カフェ|ホテル|旅館|美容|歯科|歯医者|病院|医院|クリニック|"
    u"弁護士|税理士|会社|企業|業者|店舗|お店|店|"
    u"工務店|水道|電気工事|不動産|餐厅|餐馆|酒店|公司|企业|商家|医院|牙医|律师|厂家|餐廳|"
    u"飯店|診所|商店|음식점|맛집|호텔|병원|치과|"
    u"업체|회사|변호사|미용실|카페|의원|병원|식당|변호사|법률|학원|정비|부동산|牙醫|律師|餐館|水電|旅館|醫院|藥局|美髮|"
    u"汽車|مطاعم|مطعم|فنادق|شركات|شركة|عيادة|محلات|מסעדות|מלון|"
    u"עסקים|חברות|רופא|עורכי דין|ร้านอาหาร|"
    u"โรงแรม|บริษัท|ร้าน|nhà hàng|khách sạn|công ty|rumah makan|perusahaan|toko|रेस्टोरेंट|होटल|"
    u"法律事務所|薬局|整体|整骨|会員企業|保育園|幼稚園|学校|銀行|郵便局|ラーメン|약국|세무|매장|유치원|은행|기업|"
    u"대리점|诊所|"
    u"事务所|会计|中介|学校|幼儿园|银行|供应商|经销商|门店|機車行|會計|仲介|門市|學校|幼兒園|廠商|經銷商|คลินิก|"
    u"ทันตกรรม|อู่ซ่อม|โรงพยาบาล|ทนาย|สำนักงานกฎหมาย|สาขา|โรงเรียน|ธนาคาร|ตัวแทนจำหน่าย|"
    u"nha khoa|luật sư|bệnh viện|nhà thuốc|kế toán|cửa hàng|chi nhánh|trường học|"
    u"ngân hàng|phòng khám|đại lý|חשמלאי|מוסכ|מספרות|אינסטלטור|מרקחת|"
    u"רואי חשבון|סניפים|חנויות|رواي|أسنان|محام|أطباء|طبيب|صيدلي|مستشف|محاسب|فروع|"
    u"مدارس|بنوك|متاجر|عيادات|ورش|فندق|डॉक्टर|वकील|अस्पताल";

constexpr auto otherStems =
    u"job jobs karriere career careers vacancies stellenangebot emploi empleo lavoro vacature praca recipe recipes "
    u"rezept "
    u"recette receta ricett przepis news nachrichten zeitung noticias actualit actualidad notizie nieuws wiadomości "
    u"новост blog article articles artikel forum thread topic discussion product products produkt produit producto "
    u"prodott shop cart warenkorb panier carrito carrello onlineshop sale angebote event events veranstaltung concert "
    u"concerts kalender calendar agenda gallery galerie galería album video videos photos movie movies film films song "
    u"songs lyrics book books wiki wikipedia download software game games classifieds kleinanzeigen annonces anuncios "
    u"immobilien apartments wohnungen cars gebrauchtwagen obituar traueranzeig todesanzeig nécrologi necrologi "
    u"nekrolog staff faculty team players spieler roster standings";
constexpr auto otherMarks = u"求人|転職|レシピ|ニュース|ブログ|記事|商品|掲示板|イベント|招聘|新闻|博客|论坛|商品|产品|"
                            u"视频|채용|뉴스|블로그|상품";

constexpr auto jobStems =
    u"job jobs karriere career careers vacancies vacancy stellenangebot stellenangebote stellenanzeige emploi empleo "
    u"vacature vacatures praca nabídka hiring recruitment вакансии вакансия ваканс";
constexpr auto jobMarks = u"(m/w|(w/m|(m/f|(f/m|(h/f|m/w/d|m/f/d|求人|転職|招聘|채용";

constexpr auto buttonWords =
    u"more|more info|more details|details|detail|view|view details|view profile|view listing|profile|read more|see "
    u"more|"
    u"learn more|website|web|visit website|homepage|www|map|maps|view map|show map|directions|get "
    u"directions|route|call|"
    u"call now|phone|email|e-mail|send email|contact|contact us|book|book now|reserve|menu|reviews|write a review|"
    u"add review|share|save|favorite|like|compare|print|open|closed|closed now|open now|order online|request quote|"
    u"get a quote|claim|claim this business|sponsored|ad|featured|premium|verified|new|top|mehr|mehr infos|"
    u"weitere infos|zum eintrag|zum profil|webseite|karte|route planen|routenplaner|anrufen|kontakt|bewerten|anzeige|"
    u"geöffnet|geschlossen|merken|termin buchen|en savoir plus|plus d'infos|voir|voir la fiche|site "
    u"web|plan|itinéraire|"
    u"appeler|contacter|ouvert|fermé|ver más|más información|ver ficha|sitio web|mapa|cómo llegar|llamar|contactar|"
    u"abierto|cerrado|dettagli|scheda|sito web|mappa|indicazioni|chiama|contatta|aperto|chiuso|meer|meer info|"
    u"bekijk|kaart|bel|website bezoeken|więcej|szczegóły|strona www|mapa|zadzwoń|více|podrobnosti|zavolat|"
    u"zobacz więcej|zobacz szczegóły|läs mer|visa mer|les mer|se mer|læs mere|se detaljer|lue lisää|näytä tiedot|"
    u"více informací|viac informácií|részletek|bővebben|detalii|vezi detalii|λεπτομέρειες|detaylar|detaylı bilgi|"
    u"детальніше|detaljnije|lihat detail|selengkapnya|xem chi tiết|chi tiết|פרטים נוספים|التفاصيل|ดูรายละเอียด|店舗詳細|"
    u"詳細を見る|查看详情|查看詳情|show number|show phone number|nummer anzeigen|telefonnummer anzeigen|"
    u"afficher le numéro|voir le numéro|ver teléfono|mostrar teléfono|ver telefone|mostra numero|toon nummer|visa "
    u"nummer|vis nummer|näytä numero|pokaż numer|pokaż telefon|zobrazit číslo|показать телефон|показать номер|показати "
    u"номер|"
    u"подробнее|сайт|на "
    u"карте|позвонить|詳細|詳しく見る|地図|地図を見る|電話する|予約|予約する|详情|地图|地圖|查看|更多|상세보기|지도|"
    u"전화";

// The keys are parts of the literals above.
WordTable<HintSet> TableOf(std::span<const Row> rows, QChar separator) {
    WordTable<HintSet> table;
    for (const Row& row : rows)
        for (const QStringView word : QStringView(row.Words).split(separator, Qt::SkipEmptyParts))
            table[word] |= row.Hints;
    return table;
}

WordTable<bool> SetOf(const char16_t* words, QChar separator) {
    WordTable<bool> set;
    for (const QStringView word : QStringView(words).split(separator, Qt::SkipEmptyParts))
        set[word] = true;
    return set;
}

// What the words of a text stand for as a whole. Most texts are in no table, which shows before they are folded.
template <typename Value>
Value ValueOfText(const WordTable<Value>& table, QStringView text) {
    const QStringView bare = WithoutEndMarks(text);
    if (bare.isEmpty())
        return Value();
    const QChar first = Ascii::Lower(bare.front());
    const bool ascii = first.unicode() < 0x80;
    if (ascii && (!table.MayBegin(first) || (!table.MayHave(first, bare.size()) && IsPlainText(bare))))
        return Value();
    return table.ValueOf(BareView(bare).View());
}

// What a character says of where a label ends.
enum class LabelSign : quint8 { None, Number, End };

LabelSign SortOf(QChar c) {
    if (Ascii::IsLetter(c) || c == u' ')
        return LabelSign::None;
    const char16_t u = c.unicode();
    if (u == u':' || u == u'=' || u == u'|' || u == 0x2013 || u == 0xFF1A)
        return LabelSign::End;
    return c.isDigit() || u == u'+' || u == u'(' ? LabelSign::Number : LabelSign::None;
}

// Whether a word of the text begins with one of the stems.
class StemSearch {
public:
    StemSearch(const char16_t* stems, const char16_t* marks) : stems_(SetOf(stems, u' ')) {
        for (const QStringView mark : QStringView(marks).split(u'|'))
            marks_ << mark.toString();
    }

    bool FindsIn(QStringView words) const {
        for (qsizetype at = 0; at < words.size();) {
            if (!words[at].isLetter()) {
                ++at;
                continue;
            }
            qsizetype end = at;
            while (end < words.size() &&
                   (words[end].isLetter() || (words[end].unicode() >= 0x300 && words[end].isMark())))
                ++end;
            // Short stems are whole words; longer ones may be followed by an ending.
            for (qsizetype length = std::min(end - at, stems_.Longest()); length >= 3; --length)
                if ((length >= 5 || length == end - at) && stems_.Contains(words.sliced(at, length)))
                    return true;
            at = end;
        }
        // The marks are of scripts without blanks, or have a stroke.
        if (std::none_of(words.begin(), words.end(), [](QChar c) { return c.unicode() >= 0x590 || c == u'/'; }))
            return false;
        return std::any_of(marks_.begin(), marks_.end(), [words](const QString& mark) { return words.contains(mark); });
    }

private:
    WordTable<bool> stems_;
    QStringList marks_;
};

} // namespace

HintSet HintsOfName(QStringView name) {
    static const WordTable<HintSet> table = TableOf(nameParts, u' ');
    HintSet hints = 0;
    HintSet last = 0;   // what the last part of a name says that says anything
    bool named = false; // whether an earlier part of it said "name"
    HintSet ended = 0;  // what the names before it said
    const auto endToken = [&] {
        // "firm-trade" is the trade of a firm, "name-of-shop" a name.
        constexpr HintSet others = Hint::Phone | Hint::Fax | Hint::Mail | Hint::Website | Hint::Address |
                                   Hint::Category | Hint::Hours | Hint::Rating | Hint::Description | Hint::Map;
        hints |= last;
        if (named && (last & others) == 0)
            hints = hints | Hint::Name;
        last = 0;
        named = false;
        ended = hints;
    };
    const auto look = [&](const QString& part) {
        // "category-str-list" holds strings.
        const bool strings = part == u"str" && (hints | last) != 0;
        const HintSet says = part.size() >= 2 && !strings ? table.ValueOf(part) : 0;
        if (says == 0)
            return;
        named = named || Has(last, Hint::Name);
        hints |= last & ~static_cast<HintSet>(Hint::Name);
        last = says;
    };
    QString before;
    // Some pages keep addresses in classes.
    if (name.contains(u'/'))
        return 0;
    for (qsizetype at = 0; at < name.size() && at < 300;) {
        if (!Ascii::IsLower(name[at]) && !Ascii::IsUpper(name[at])) {
            if (name[at].isSpace()) {
                before.clear();
                endToken();
            } else if (name.sliced(at).startsWith(u"__") && at + 2 < name.size() && !name[at + 2].isSpace()) {
                // "teaser__line": the block is the one around, this is its line.
                before.clear();
                hints = ended;
                last = 0;
                named = false;
            }
            ++at;
            continue;
        }
        // "ng-star-inserted" is of the framework that the page is made with.
        if ((at == 0 || name[at - 1].isSpace()) && name.sliced(at).startsWith(u"ng-")) {
            while (at < name.size() && !name[at].isSpace())
                ++at;
            continue;
        }
        // A part: "Phone" of "listingPhone", "URL", "phone".
        qsizetype end = at + 1;
        if (Ascii::IsUpper(name[at]) && end < name.size() && Ascii::IsUpper(name[end]))
            while (end < name.size() && Ascii::IsUpper(name[end]))
                ++end;
        while (end < name.size() && Ascii::IsLower(name[end]))
            ++end;
        const QString part = name.sliced(at, end - at).toString().toLower();
        look(part);
        if (!before.isEmpty())
            look(before + part);
        before = part;
        at = end;
    }
    endToken();
    return hints;
}

HintSet HintsOfLabel(QStringView text) {
    static const WordTable<HintSet> table = TableOf(labels, u'|');
    if (text.size() > 40)
        return 0;
    const HintSet hints = ValueOfText(table, text);
    // "Address / العنوان": a label in two languages.
    const bool mayBeTwo = hints == 0 && std::find(text.begin(), text.end(), u'/') != text.end();
    const qsizetype slash = mayBeTwo ? text.indexOf(u" / ") : -1;
    return slash > 0 ? HintsOfLabel(text.first(slash)) & HintsOfLabel(text.sliced(slash + 3)) : hints;
}

LeadingLabel LabelAtBegin(QStringView text) {
    const auto isEnd = [](QChar c) { return SortOf(c) == LabelSign::End; };
    qsizetype number = 0; // where one begins
    const qsizetype reach = std::min<qsizetype>(text.size(), 40);
    for (qsizetype i = 1; i < reach; ++i) {
        const LabelSign sign = SortOf(text[i]);
        if (sign == LabelSign::None)
            continue;
        if (sign == LabelSign::Number) {
            if (number == 0 && i < 24)
                number = i;
            continue;
        }
        const HintSet hints = HintsOfLabel(text.first(i));
        if (hints == 0 && text[i] != u':' && text[i] != u'\uFF1A')
            continue;
        if (hints == 0)
            return {};
        ++i;
        while (i < text.size() && (text[i].isSpace() || isEnd(text[i])))
            ++i;
        return {hints, i};
    }
    // "Tel. 030 123", "Fax 030 124": the label ends where the number begins. "T12 X4K8" is a postal code.
    if (number == 0 || (number == 1 && text[number] != u'+' && text[number] != u'('))
        return {};
    const HintSet hints = HintsOfLabel(text.first(number));
    if (hints == 0)
        return {};
    // "Office 346, Al Moosa Tower" is none.
    const auto letters = std::count_if(text.begin() + number, text.end(), [](QChar c) { return c.isLetter(); });
    const auto digits = std::count_if(text.begin() + number, text.end(), [](QChar c) { return c.isDigit(); });
    if (digits < 6 && letters > 3)
        return {};
    return Has(hints, Hint::Phone) || Has(hints, Hint::Fax) ? LeadingLabel{hints, number} : LeadingLabel{};
}

bool NamesBusinesses(QStringView words) {
    static const StemSearch search(businessStems, businessMarks);
    return search.FindsIn(words);
}

bool NamesHosts(QStringView words) {
    static const StemSearch search(
        u"hotel hôtel hostel motel albergh отел гостиниц pension gasthof gasthaus guesthouse breakfast inns resort "
        u"lodging lodge cottages "
        u"accommodation unterkünfte hébergement alojamiento agriturism nocleg ubytování szállás camping campsite "
        u"restaurant restaurang restauracj restaurac ristorant ресторан étterem dining bistro trattori pizzeri",
        u"ホテル|旅館|酒店|宾馆|호텔|餐厅|餐廳|레스토랑");
    return search.FindsIn(words);
}

bool NamesOtherThings(QStringView words) {
    static const StemSearch search(otherStems, otherMarks);
    return search.FindsIn(words);
}

bool NamesJobs(QStringView words) {
    static const StemSearch search(jobStems, jobMarks);
    return search.FindsIn(words);
}

bool NamesOneFirm(QStringView words) {
    static const StemSearch search(
        u"contact kontakt contacto contatti contatto contato kapcsolat yhteystiedot impressum "
        u"imprint legal about über wir nosotros somos sommes siamo standorte filialen "
        u"locations branches offices team staff mitarbeiter",
        u"お問い合わせ|会社概要|联系我们|контакт|επικοινωνία");
    return search.FindsIn(words);
}

bool IsButtonText(QStringView text) {
    static const WordTable<bool> table = SetOf(buttonWords, u'|');
    return ValueOfText(table, text);
}

} // namespace Brindle
