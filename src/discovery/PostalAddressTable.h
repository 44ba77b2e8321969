#pragma once

#include <QStringView>

namespace Brindle {

/// In which order a country's addresses name things.
enum class AddressOrder {
    CodeCity,      ///< street, postal code city
    CityStateCode, ///< street, city, state postal code
    CityCode,      ///< street, city, (county) postal code; or no postal code at all
    LargeToSmall   ///< state, city, street, written without blanks or commas
};

struct AddressCountry {
    QStringView Region; ///< ISO 3166 alpha-2
    AddressOrder Order;
    /// Shapes of the postal code, separated by "|": 9 a digit, A a letter, X either, a blank one that may be missing.
    QStringView Codes;
    /// What may stand before the code with a hyphen ("D-10115"), separated by "|".
    QStringView CodePrefixes;
    QStringView Languages; ///< of which it is the usual country
    QStringView Names;     ///< English first; in the languages of those who list businesses there
};

// clang-format off
inline constexpr AddressCountry addressCountries[] = {
    {u"AE", AddressOrder::CityCode, u"", u"", u"", u"United Arab Emirates|UAE|U.A.E.|Vereinigte Arabische Emirate|Émirats arabes unis|Emiratos Árabes Unidos|Emirati Arabi Uniti|الإمارات العربية المتحدة"},
    {u"AR", AddressOrder::CodeCity, u"A9999AAA|A9999|9999", u"C.P.|CP", u"", u"Argentina|Argentinien|Argentine|Argentyna|アルゼンチン"},
    {u"AT", AddressOrder::CodeCity, u"9999", u"A|AT", u"", u"Austria|Österreich|Autriche|Oostenrijk|Rakousko|Ausztria|Avusturya|オーストリア|Rakúsko|Østrig|Österrike"},
    {u"AU", AddressOrder::CityStateCode, u"9999", u"", u"", u"Australia|Australien|Australie|Austrália|オーストラリア"},
    {u"BE", AddressOrder::CodeCity, u"9999", u"B|BE", u"", u"Belgium|Belgien|Belgique|België|Belgio|Bélgica|Belgia|ベルギー"},
    {u"BG", AddressOrder::CodeCity, u"9999", u"BG", u"bg", u"Bulgaria|Bulgarien|Bulgarie|България|Bułgaria"},
    {u"BR", AddressOrder::CityStateCode, u"99999-999|99999999", u"CEP|CEP:", u"", u"Brazil|Brasil|Brasilien|Brésil|Brasile|Brazylia|ブラジル"},
    {u"CA", AddressOrder::CityStateCode, u"A9A 9A9|A9A-9A9", u"", u"", u"Canada|Kanada|Canadá|カナダ"},
    {u"CH", AddressOrder::CodeCity, u"9999", u"CH", u"rm", u"Switzerland|Schweiz|Suisse|Svizzera|Suiza|Szwajcaria|Zwitserland|Svizra|スイス|Schweiz/Suisse"},
    {u"CL", AddressOrder::CityCode, u"999 9999", u"", u"", u"Chile|Chili|Cile"},
    {u"CN", AddressOrder::LargeToSmall, u"999999", u"", u"zh", u"China|中国|中國|Chine|Cina|PR China|P.R. China|Chiny"},
    {u"CO", AddressOrder::CityCode, u"999999", u"", u"", u"Colombia|Kolumbien|Colombie|Kolumbia"},
    {u"CY", AddressOrder::CodeCity, u"9999", u"CY", u"", u"Cyprus|Zypern|Κύπρος|Chypre|Chipre|Cypr"},
    {u"CZ", AddressOrder::CodeCity, u"999 99", u"CZ", u"cs", u"Czech Republic|Czechia|Česká republika|Česko|Tschechien|République tchèque|Tchéquie|Czechy|Chequia|Cechia"},
    {u"DE", AddressOrder::CodeCity, u"99999", u"D|DE", u"de", u"Germany|Deutschland|Allemagne|Alemania|Germania|Niemcy|Duitsland|Tyskland|Alemanha|Německo|Németország|Saksa|Almanya|Γερμανία|Германия|ドイツ|德国"},
    {u"DK", AddressOrder::CodeCity, u"9999", u"DK", u"da", u"Denmark|Danmark|Dänemark|Danemark|Dinamarca|Danimarca|Dania|Denemarken|デンマーク"},
    {u"EE", AddressOrder::CodeCity, u"99999", u"EE", u"et", u"Estonia|Eesti|Estland|Estonie"},
    {u"EG", AddressOrder::CityCode, u"99999", u"", u"", u"Egypt|Ägypten|Égypte|Egipto|Egitto|مصر"},
    {u"ES", AddressOrder::CodeCity, u"99999", u"E|ES|C.P.|CP", u"es|ca|eu|gl", u"Spain|España|Spanien|Espagne|Spagna|Espanha|Hiszpania|Spanje|Espanya|スペイン"},
    {u"FI", AddressOrder::CodeCity, u"99999", u"FI|FIN", u"fi", u"Finland|Suomi|Finnland|Finlande|Finlandia|フィンランド"},
    {u"FR", AddressOrder::CodeCity, u"99999|99 999", u"F|FR", u"fr", u"France|Frankreich|Francia|França|Francja|Frankrijk|Frankrike|Franciaország|フランス"},
    {u"GB", AddressOrder::CityCode, u"A9 9AA|A99 9AA|AA9 9AA|AA99 9AA|A9A 9AA|AA9A 9AA", u"", u"cy", u"United Kingdom|UK|U.K.|Great Britain|England|Scotland|Wales|Northern Ireland|Vereinigtes Königreich|Großbritannien|Royaume-Uni|Reino Unido|Regno Unito|Wielka Brytania|イギリス"},
    {u"GR", AddressOrder::CodeCity, u"999 99", u"GR|Τ.Κ.|ΤΚ|T.K.", u"el", u"Greece|Ελλάδα|Griechenland|Grèce|Grecia|Grecja|Hellas"},
    {u"HK", AddressOrder::CityCode, u"", u"", u"", u"Hong Kong|香港|Hongkong|Hong Kong SAR"},
    {u"HR", AddressOrder::CodeCity, u"99999", u"HR", u"hr", u"Croatia|Hrvatska|Kroatien|Croatie|Croacia|Croazia|Chorwacja"},
    {u"HU", AddressOrder::CodeCity, u"9999", u"H|HU", u"hu", u"Hungary|Magyarország|Ungarn|Hongrie|Hungría|Ungheria|Węgry"},
    {u"ID", AddressOrder::CityCode, u"99999", u"", u"id", u"Indonesia|Indonesien|Indonésie"},
    {u"IE", AddressOrder::CityCode, u"A99 XXXX|A9A XXXX", u"", u"ga", u"Ireland|Irland|Irlande|Irlanda|Éire|Republic of Ireland|Irlandia|Ierland"},
    {u"IL", AddressOrder::CityCode, u"9999999|99999", u"", u"he", u"Israel|ישראל|Israël|Israele|Izrael"},
    {u"IN", AddressOrder::CityCode, u"999999|999 999", u"", u"hi", u"India|Indien|Inde|भारत|Indie|インド"},
    {u"IS", AddressOrder::CodeCity, u"999", u"IS", u"is", u"Iceland|Ísland|Island|Islande|Islandia|Islanda"},
    {u"IT", AddressOrder::CodeCity, u"99999", u"I|IT|CAP", u"it", u"Italy|Italia|Italien|Italie|Itália|Włochy|Italië|イタリア"},
    {u"JP", AddressOrder::LargeToSmall, u"999-9999", u"", u"ja", u"Japan|日本|Japon|Japón|Giappone|Japonia|日本国"},
    {u"KE", AddressOrder::CodeCity, u"99999", u"", u"", u"Kenya|Kenia"},
    {u"KR", AddressOrder::LargeToSmall, u"99999|999-999", u"", u"ko", u"South Korea|Korea|Republic of Korea|대한민국|한국|Südkorea|Corée du Sud|Corea del Sur"},
    {u"LT", AddressOrder::CodeCity, u"99999", u"LT", u"lt", u"Lithuania|Lietuva|Litauen|Lituanie|Litwa"},
    {u"LU", AddressOrder::CodeCity, u"9999", u"L|LU", u"lb", u"Luxembourg|Luxemburg|Lussemburgo|Lëtzebuerg|Luksemburg"},
    {u"LV", AddressOrder::CityCode, u"LV-9999|9999", u"LV", u"lv", u"Latvia|Latvija|Lettland|Lettonie|Łotwa"},
    {u"MA", AddressOrder::CodeCity, u"99999", u"", u"", u"Morocco|Maroc|Marokko|Marruecos|Marocco|المغرب"},
    {u"MT", AddressOrder::CityCode, u"AAA 9999", u"", u"mt", u"Malta|Malte"},
    {u"MX", AddressOrder::CodeCity, u"99999", u"C.P.|CP", u"", u"Mexico|México|Mexiko|Mexique|Messico|Méjico|Meksyk"},
    {u"MY", AddressOrder::CodeCity, u"99999", u"", u"ms", u"Malaysia|Malaisie|Malasia|マレーシア"},
    {u"NG", AddressOrder::CityCode, u"999999", u"", u"", u"Nigeria|Nigéria"},
    {u"NL", AddressOrder::CodeCity, u"9999 AA", u"NL", u"nl", u"Netherlands|The Netherlands|Nederland|Niederlande|Pays-Bas|Países Bajos|Paesi Bassi|Holland|Holandia|オランダ"},
    {u"NO", AddressOrder::CodeCity, u"9999", u"NO|N", u"no|nb|nn", u"Norway|Norge|Norwegen|Norvège|Noruega|Norvegia|Norwegia|Noreg"},
    {u"NZ", AddressOrder::CityCode, u"9999", u"", u"mi", u"New Zealand|Neuseeland|Nouvelle-Zélande|Nueva Zelanda|Aotearoa"},
    {u"PE", AddressOrder::CityCode, u"99999", u"", u"", u"Peru|Perú|Pérou|Perù"},
    {u"PH", AddressOrder::CityCode, u"9999", u"", u"tl|fil", u"Philippines|Pilipinas|Philippinen|Filipinas"},
    {u"PL", AddressOrder::CodeCity, u"99-999", u"PL", u"pl", u"Poland|Polska|Polen|Pologne|Polonia|Polsko|Polônia|Lengyelország|ポーランド"},
    {u"PT", AddressOrder::CodeCity, u"9999-999|9999", u"P|PT", u"pt", u"Portugal|Portogallo|Portugalia|ポルトガル"},
    {u"RO", AddressOrder::CityCode, u"999999", u"RO", u"ro", u"Romania|România|Rumänien|Roumanie|Rumania|Rumunia"},
    {u"RS", AddressOrder::CodeCity, u"99999|999999", u"RS", u"sr", u"Serbia|Srbija|Србија|Serbien|Serbie"},
    {u"RU", AddressOrder::CityCode, u"999999", u"", u"ru", u"Russia|Россия|Russland|Russie|Rusia|Rosja|Russian Federation"},
    {u"SA", AddressOrder::CityCode, u"99999-9999|99999", u"", u"", u"Saudi Arabia|Saudi-Arabien|Arabie saoudite|المملكة العربية السعودية|السعودية|KSA"},
    {u"SE", AddressOrder::CodeCity, u"999 99", u"SE|S", u"sv", u"Sweden|Sverige|Schweden|Suède|Suecia|Svezia|Szwecja|スウェーデン"},
    {u"SG", AddressOrder::CityCode, u"999999", u"S", u"", u"Singapore|Singapur|Singapour|新加坡|シンガポール"},
    {u"SI", AddressOrder::CodeCity, u"9999", u"SI", u"sl", u"Slovenia|Slovenija|Slowenien|Slovénie|Eslovenia|Słowenia"},
    {u"SK", AddressOrder::CodeCity, u"999 99", u"SK", u"sk", u"Slovakia|Slovensko|Slowakei|Slovaquie|Eslovaquia|Słowacja|Slovak Republic"},
    {u"TH", AddressOrder::CityCode, u"99999", u"", u"th", u"Thailand|ประเทศไทย|Thaïlande|Tailandia|タイ"},
    {u"TN", AddressOrder::CodeCity, u"9999", u"", u"", u"Tunisia|Tunisie|Tunesien|تونس"},
    {u"TR", AddressOrder::CodeCity, u"99999", u"TR", u"tr", u"Turkey|Türkiye|Türkei|Turquie|Turquía|Turchia|Turcja"},
    {u"TW", AddressOrder::LargeToSmall, u"999999|99999|999", u"", u"", u"Taiwan|台灣|臺灣|Taïwan|Tajwan"},
    {u"UA", AddressOrder::CityCode, u"99999", u"", u"uk", u"Ukraine|Україна|Ucrania|Ucraina|Украина|Ukraina"},
    {u"US", AddressOrder::CityStateCode, u"99999-9999|99999", u"", u"", u"United States|USA|U.S.A.|US|United States of America|Vereinigte Staaten|États-Unis|Etats-Unis|Estados Unidos|EE.UU.|Stati Uniti|Stany Zjednoczone|アメリカ"},
    {u"VN", AddressOrder::CityCode, u"999999|99999", u"", u"vi", u"Vietnam|Việt Nam|Viet Nam"},
    {u"ZA", AddressOrder::CityCode, u"9999", u"", u"af", u"South Africa|Südafrika|Afrique du Sud|Sudáfrica|Suid-Afrika|Sudafrica"},
};

/// States, provinces and counties as addresses name them, separated by "|"; an abbreviation stands behind "=".
struct AddressStates {
    QStringView Region;
    QStringView States;
};
inline constexpr AddressStates addressStates[] = {
    {u"US", u"Alabama=AL|Alaska=AK|Arizona=AZ|Arkansas=AR|California=CA|Colorado=CO|Connecticut=CT|Delaware=DE|Florida=FL|Georgia=GA|Hawaii=HI|Idaho=ID|Illinois=IL|Indiana=IN|Iowa=IA|Kansas=KS|Kentucky=KY|Louisiana=LA|Maine=ME|Maryland=MD|Massachusetts=MA|Michigan=MI|Minnesota=MN|Mississippi=MS|Missouri=MO|Montana=MT|Nebraska=NE|Nevada=NV|New Hampshire=NH|New Jersey=NJ|New Mexico=NM|New York=NY|North Carolina=NC|North Dakota=ND|Ohio=OH|Oklahoma=OK|Oregon=OR|Pennsylvania=PA|Rhode Island=RI|South Carolina=SC|South Dakota=SD|Tennessee=TN|Texas=TX|Utah=UT|Vermont=VT|Virginia=VA|Washington=WA|West Virginia=WV|Wisconsin=WI|Wyoming=WY|District of Columbia=DC|D.C.|Puerto Rico=PR|N.Y.|Calif.|Fla.|Tex.|Ill.|Mass."},
    {u"CA", u"Alberta=AB|British Columbia=BC|Colombie-Britannique|Manitoba=MB|New Brunswick=NB|Nouveau-Brunswick|Newfoundland and Labrador=NL|Newfoundland=NF|Nova Scotia=NS|Nouvelle-Écosse|Northwest Territories=NT|Nunavut=NU|Ontario=ON|Prince Edward Island=PE|PEI|Quebec=QC|Québec=PQ|Saskatchewan=SK|Yukon=YT|Ont.|B.C.|Que.|Alta."},
    {u"AU", u"New South Wales=NSW|Victoria=VIC|Queensland=QLD|South Australia=SA|Western Australia=WA|Tasmania=TAS|Northern Territory=NT|Australian Capital Territory=ACT|Vic|Qld|Tas"},
    {u"BR", u"Acre=AC|Alagoas=AL|Amapá=AP|Amazonas=AM|Bahia=BA|Ceará=CE|Distrito Federal=DF|Espírito Santo=ES|Goiás=GO|Maranhão=MA|Mato Grosso=MT|Mato Grosso do Sul=MS|Minas Gerais=MG|Pará=PA|Paraíba=PB|Paraná=PR|Pernambuco=PE|Piauí=PI|Rio de Janeiro=RJ|Rio Grande do Norte=RN|Rio Grande do Sul=RS|Rondônia=RO|Roraima=RR|Santa Catarina=SC|São Paulo=SP|Sergipe=SE|Tocantins=TO"},
    {u"MX", u"Aguascalientes=Ags.|Baja California=B.C.|Baja California Sur=B.C.S.|Campeche=Camp.|Chiapas=Chis.|Chihuahua=Chih.|Ciudad de México=CDMX|Coahuila=Coah.|Colima=Col.|Durango=Dgo.|Estado de México=Edomex|Méx.|D.F.|Guanajuato=Gto.|Guerrero=Gro.|Hidalgo=Hgo.|Jalisco=Jal.|Michoacán=Mich.|Morelos=Mor.|Nayarit=Nay.|Nuevo León=N.L.|Oaxaca=Oax.|Puebla=Pue.|Querétaro=Qro.|Quintana Roo=Q.R.|San Luis Potosí=S.L.P.|Sinaloa=Sin.|Sonora=Son.|Tabasco=Tab.|Tamaulipas=Tamps.|Tlaxcala=Tlax.|Veracruz=Ver.|Yucatán=Yuc.|Zacatecas=Zac."},
    {u"IN", u"Andhra Pradesh=AP|Arunachal Pradesh|Assam=AS|Bihar=BR|Chhattisgarh=CG|Goa=GA|Gujarat=GJ|Haryana=HR|Himachal Pradesh=HP|Jharkhand=JH|Karnataka=KA|Kerala=KL|Madhya Pradesh=MP|Maharashtra=MH|Manipur|Meghalaya|Mizoram|Nagaland|Odisha=OD|Orissa|Punjab=PB|Rajasthan=RJ|Sikkim|Tamil Nadu=TN|Telangana=TS|Tripura|Uttar Pradesh=UP|Uttarakhand=UK|West Bengal=WB|Jammu and Kashmir=JK|Puducherry"},
    {u"IT", u"Agrigento=AG|Alessandria=AL|Ancona=AN|Aosta=AO|Arezzo=AR|Ascoli Piceno=AP|Asti=AT|Avellino=AV|Bari=BA|Barletta-Andria-Trani=BT|Belluno=BL|Benevento=BN|Bergamo=BG|Biella=BI|Bologna=BO|Bolzano=BZ|Brescia=BS|Brindisi=BR|Cagliari=CA|Caltanissetta=CL|Campobasso=CB|Caserta=CE|Catania=CT|Catanzaro=CZ|Chieti=CH|Como=CO|Cosenza=CS|Cremona=CR|Crotone=KR|Cuneo=CN|Enna=EN|Fermo=FM|Ferrara=FE|Firenze=FI|Foggia=FG|Forlì-Cesena=FC|Frosinone=FR|Genova=GE|Gorizia=GO|Grosseto=GR|Imperia=IM|Isernia=IS|L'Aquila=AQ|La Spezia=SP|Latina=LT|Lecce=LE|Lecco=LC|Livorno=LI|Lodi=LO|Lucca=LU|Macerata=MC|Mantova=MN|Massa-Carrara=MS|Matera=MT|Messina=ME|Milano=MI|Modena=MO|Monza e Brianza=MB|Napoli=NA|Novara=NO|Nuoro=NU|Oristano=OR|Padova=PD|Palermo=PA|Parma=PR|Pavia=PV|Perugia=PG|Pesaro e Urbino=PU|Pescara=PE|Piacenza=PC|Pisa=PI|Pistoia=PT|Pordenone=PN|Potenza=PZ|Prato=PO|Ragusa=RG|Ravenna=RA|Reggio Calabria=RC|Reggio Emilia=RE|Rieti=RI|Rimini=RN|Roma=RM|Rovigo=RO|Salerno=SA|Sassari=SS|Savona=SV|Siena=SI|Siracusa=SR|Sondrio=SO|Sud Sardegna=SU|Taranto=TA|Teramo=TE|Terni=TR|Torino=TO|Trapani=TP|Trento=TN|Treviso=TV|Trieste=TS|Udine=UD|Varese=VA|Venezia=VE|Verbano-Cusio-Ossola=VB|Vercelli=VC|Verona=VR|Vibo Valentia=VV|Vicenza=VI|Viterbo=VT"},
    {u"CH", u"=AG|=AI|=AR|=BE|=BL|=BS|=FR|=GE|=GL|=GR|=JU|=LU|=NE|=NW|=OW|=SG|=SH|=SO|=SZ|=TG|=TI|=UR|=VD|=VS|=ZG|=ZH"},
    {u"ES", u"Álava|Albacete|Alicante|Almería|Asturias|Ávila|Badajoz|Barcelona|Burgos|Cáceres|Cádiz|Cantabria|Castellón|Ciudad Real|Córdoba|A Coruña|La Coruña|Cuenca|Girona|Gerona|Granada|Guadalajara|Guipúzcoa|Gipuzkoa|Huelva|Huesca|Illes Balears|Islas Baleares|Baleares|Jaén|León|Lleida|Lérida|Lugo|Madrid|Málaga|Murcia|Navarra|Ourense|Palencia|Las Palmas|Pontevedra|La Rioja|Salamanca|Segovia|Sevilla|Soria|Tarragona|Santa Cruz de Tenerife|Teruel|Toledo|Valencia|Valladolid|Vizcaya|Bizkaia|Zamora|Zaragoza"},
    {u"IE", u"Co. Carlow|Co. Cavan|Co. Clare|Co. Cork|Co. Donegal|Co. Dublin|Co. Galway|Co. Kerry|Co. Kildare|Co. Kilkenny|Co. Laois|Co. Leitrim|Co. Limerick|Co. Longford|Co. Louth|Co. Mayo|Co. Meath|Co. Monaghan|Co. Offaly|Co. Roscommon|Co. Sligo|Co. Tipperary|Co. Waterford|Co. Westmeath|Co. Wexford|Co. Wicklow|Co. Antrim|Co. Armagh|Co. Down|Co. Fermanagh|Co. Tyrone|Co. Derry|Co. Londonderry"},
    {u"GB", u"Bedfordshire=Beds|Berkshire=Berks|Buckinghamshire=Bucks|Cambridgeshire=Cambs|Cheshire|Cornwall|Cumbria|Derbyshire|Devon|Dorset|County Durham|East Sussex|Essex|Gloucestershire=Glos|Greater London|Greater Manchester|Hampshire=Hants|Herefordshire|Hertfordshire=Herts|Isle of Wight|Kent|Lancashire=Lancs|Leicestershire=Leics|Lincolnshire=Lincs|Merseyside|Middlesex|Norfolk|North Yorkshire|Northamptonshire=Northants|Northumberland|Nottinghamshire=Notts|Oxfordshire=Oxon|Rutland|Shropshire|Somerset|South Yorkshire|Staffordshire=Staffs|Suffolk|Surrey|Tyne and Wear|Warwickshire|West Midlands|West Sussex|West Yorkshire|Wiltshire=Wilts|Worcestershire|Yorkshire|Aberdeenshire|Angus|Argyll|Ayrshire|Fife|Lanarkshire|Midlothian|East Lothian|West Lothian|Perthshire|Renfrewshire|Gwent|Dyfed|Gwynedd|Powys|South Glamorgan|Mid Glamorgan|West Glamorgan|Clwyd|County Antrim|County Down|County Armagh|County Tyrone"},
    {u"JP", u"北海道|青森県|岩手県|宮城県|秋田県|山形県|福島県|茨城県|栃木県|群馬県|埼玉県|千葉県|東京都|神奈川県|新潟県|富山県|石川県|福井県|山梨県|長野県|岐阜県|静岡県|愛知県|三重県|滋賀県|京都府|大阪府|兵庫県|奈良県|和歌山県|鳥取県|島根県|岡山県|広島県|山口県|徳島県|香川県|愛媛県|高知県|福岡県|佐賀県|長崎県|熊本県|大分県|宮崎県|鹿児島県|沖縄県|Tokyo|Osaka|Kyoto|Hokkaido|Kanagawa|Aichi|Hyogo|Fukuoka|Saitama|Chiba|Hiroshima|Miyagi|Nagano|Okinawa|Shizuoka"},
    {u"CN", u"河北省|山西省|辽宁省|吉林省|黑龙江省|江苏省|浙江省|安徽省|福建省|江西省|山东省|河南省|湖北省|湖南省|广东省|海南省|四川省|贵州省|云南省|陕西省|甘肃省|青海省|内蒙古自治区|广西壮族自治区|西藏自治区|宁夏回族自治区|新疆维吾尔自治区"},
    {u"MY", u"Johor|Kedah|Kelantan|Melaka|Malacca|Negeri Sembilan|Pahang|Perak|Perlis|Pulau Pinang|Penang|Sabah|Sarawak|Selangor|Terengganu|Wilayah Persekutuan"},
    {u"ZA", u"Gauteng|Western Cape|Eastern Cape|Northern Cape|KwaZulu-Natal|Free State|Limpopo|Mpumalanga|North West"},
    {u"AR", u"Buenos Aires|Córdoba|Santa Fe|Mendoza|Tucumán|Entre Ríos|Salta|Chaco|Corrientes|Misiones|San Juan|Jujuy|Río Negro|Neuquén|Formosa|Chubut|San Luis|Catamarca|La Rioja|La Pampa|Santa Cruz|Santiago del Estero|Tierra del Fuego|CABA|C.A.B.A."},
    {u"NZ", u"Northland|Waikato|Bay of Plenty|Hawke's Bay|Hawke’s Bay|Taranaki|Manawatū|Manawatu|Manawatū-Whanganui|Manawatu-Wanganui|Tasman|Marlborough|West Coast|Canterbury|Otago|Southland"},
    {u"CO", u"Antioquia|Atlántico|Bolívar|Boyacá|Caldas|Caquetá|Casanare|Cauca|Cesar|Chocó|Córdoba|Cundinamarca|Huila|La Guajira|Magdalena|Meta|Nariño|Norte de Santander|Putumayo|Quindío|Risaralda|Santander|Sucre|Tolima|Valle del Cauca|Bogotá D.C.|Bogotá, D.C."},
    {u"ID", u"DKI Jakarta|Jawa Barat|Jawa Tengah|Jawa Timur|Banten|Bali|DI Yogyakarta|Sumatera Utara|Sumatera Barat|Sumatera Selatan|Riau|Lampung|Sulawesi Selatan|Kalimantan Timur|West Java|Central Java|East Java"},
    {u"NG", u"Lagos|Abia|Anambra|Bauchi|Bayelsa|Benue|Borno|Cross River|Delta|Ebonyi|Edo|Ekiti|Enugu|Gombe|Imo|Jigawa|Kaduna|Kano|Katsina|Kebbi|Kogi|Kwara|Nasarawa|Niger|Ogun|Ondo|Osun|Oyo|Plateau|Rivers|Sokoto|Taraba|Yobe|Zamfara|Akwa Ibom|Lagos State|Abia State|Anambra State|Delta State|Edo State|Enugu State|Kaduna State|Kano State|Ogun State|Oyo State|Rivers State|FCT|Abuja FCT"},
    {u"CL", u"Arica y Parinacota|Tarapacá|Antofagasta|Atacama|Coquimbo|Valparaíso|Región Metropolitana|O'Higgins|Maule|Ñuble|Biobío|La Araucanía|Araucanía|Los Ríos|Los Lagos|Aysén|Magallanes"},
    {u"PH", u"Metro Manila|Cavite|Laguna|Cebu|Rizal|Bulacan|Pampanga|Batangas|Davao del Sur"},
    {u"TH", u""},
    {u"RO", u"jud. Cluj|jud. Ilfov|jud. Iași|jud. Timiș|jud. Brașov|Județul Cluj|Cluj|Ilfov|Timiș|Brașov|Constanța|Sibiu|Prahova|Dolj|Bihor|Mureș|Argeș|Bacău|Suceava|Neamț|Galați"},
};
// clang-format on

} // namespace Brindle
