#include "demo/ItalianBusinesses.h"

namespace Brindle::Demo {

namespace {

// clang-format off
constexpr ItalianBusiness businesses[] = {
    {u"Pasticceria dei Fratelli Piras", u"Corso Vittorio Emanuele II 84", u"20097", u"San Donato Milanese", u"MI", u"02 5550100", u"", u"", Web::None},
    {u"Fioreria Martini", u"Via Niccolò Tommaseo 20", u"22063", u"Cantù", u"CO", u"031 5550101", u"031 5560101", u"", Web::Plain},
    {u"Pasticceria dei Fratelli D'Angelo", u"Via Po 116", u"73048", u"Nardò", u"LE", u"0833 5550102", u"", u"posta@pasticceria-dei-fratelli-d-angelo.example", Web::Start},
    {u"De Santis Ferramenta", u"Largo Sant'Ambrogio 85", u"67100", u"L'Aquila", u"AQ", u"0862 5550103", u"", u"", Web::Contact},
    {u"Panificio L'Angolo di De Santis", u"Corso Vittorio Emanuele II 53", u"70121", u"Bari", u"BA", u"080 5550104", u"", u"", Web::Large},
    {u"Officina Martini", u"Corso Vittorio Emanuele II 22", u"10121", u"Torino", u"TO", u"011 5550105", u"011 5560105", u"", Web::Missing},
    {u"Falegnameria dei Fratelli Marchetti", u"Via 25 Aprile 42", u"00184", u"Roma", u"RM", u"06 5550106", u"", u"", Web::None},
    {u"Caffè Leone", u"Viale della Libertà 57", u"20121", u"Milano", u"MI", u"02 5550107", u"", u"posta@caff-leone.example", Web::Start},
    {u"Ottica dei Fratelli Rossi", u"Largo Sant'Ambrogio 154", u"67100", u"L'Aquila", u"AQ", u"0862 5550108", u"", u"", Web::None},
    {u"Piras Trattoria", u"Via 25 Aprile 143", u"73048", u"Nardò", u"LE", u"0833 5550109", u"0833 5560109", u"", Web::Plain},
    {u"Nicolò Gelateria", u"Via Niccolò Tommaseo 181", u"20097", u"San Donato Milanese", u"MI", u"02 5550110", u"", u"", Web::Start},
    {u"Perù Caffè", u"Via Niccolò Tommaseo 89", u"70121", u"Bari", u"BA", u"080 5550111", u"", u"", Web::Contact},
    {u"Caffè Barbieri", u"Viale della Libertà 112", u"20097", u"San Donato Milanese", u"MI", u"02 5550112", u"", u"posta@caff-barbieri.example", Web::Large},
    {u"Fioreria Conti", u"Via 25 Aprile 1", u"47121", u"Forlì", u"FC", u"0543 5550113", u"0543 5560113", u"", Web::Missing},
    {u"Libreria L'Angolo di Donati", u"Strada Provinciale 186", u"73048", u"Nardò", u"LE", u"0833 5550114", u"", u"", Web::None},
    {u"Fioreria Bianchi", u"Strada Provinciale 86", u"67100", u"L'Aquila", u"AQ", u"0862 5550115", u"", u"", Web::Start},
    {u"Panificio Rossi", u"Largo Sant'Ambrogio 66", u"19121", u"La Spezia", u"SP", u"0187 5550116", u"", u"", Web::None},
    {u"Panificio dei Fratelli Gatti", u"Via Garibaldi 7", u"42121", u"Reggio Emilia", u"RE", u"0522 5550117", u"0522 5560117", u"posta@panificio-dei-fratelli-gatti.example", Web::Plain},
    {u"Officina Marchetti", u"Via Garibaldi 171", u"22063", u"Cantù", u"CO", u"031 5550118", u"", u"", Web::Start},
    {u"Pasticceria L'Angolo di Perù", u"Corso Vittorio Emanuele II 100", u"20121", u"Milano", u"MI", u"02 5550119", u"", u"", Web::Contact},
    {u"D'Angelo Ferramenta", u"Viale della Libertà 25", u"67100", u"L'Aquila", u"AQ", u"0862 5550120", u"", u"", Web::Large},
    {u"Pasticceria L'Angolo di Morelli", u"Corso Vittorio Emanuele II 115", u"70121", u"Bari", u"BA", u"080 5550121", u"080 5560121", u"", Web::Missing},
    {u"Pellegrini Idraulica", u"Via 25 Aprile 104", u"20097", u"San Donato Milanese", u"MI", u"02 5550122", u"", u"posta@pellegrini-idraulica.example", Web::None},
    {u"Caffè dei Fratelli Perù", u"Largo Sant'Ambrogio 160", u"00184", u"Roma", u"RM", u"06 5550123", u"", u"", Web::Start},
    {u"Pasticceria Morelli", u"Via 25 Aprile 16", u"20121", u"Milano", u"MI", u"02 5550124", u"", u"", Web::None},
    {u"Studio Tecnico dei Fratelli Rizzo", u"Vicolo Corto 26", u"22063", u"Cantù", u"CO", u"031 5550125", u"031 5560125", u"", Web::Plain},
    {u"Ferrari Farmacia", u"Strada Provinciale 18", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550126", u"", u"", Web::Start},
    {u"Libreria Fabbri", u"Via 25 Aprile 76", u"42121", u"Reggio Emilia", u"RE", u"0522 5550127", u"", u"posta@libreria-fabbri.example", Web::Contact},
    {u"Bianchi Ferramenta", u"Via Niccolò Tommaseo 177", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550128", u"", u"", Web::Large},
    {u"Panificio dei Fratelli Leone", u"Vicolo Corto 13", u"20097", u"San Donato Milanese", u"MI", u"02 5550129", u"02 5560129", u"", Web::Missing},
    {u"Pasticceria L'Angolo di Donati", u"Via Niccolò Tommaseo 101", u"19121", u"La Spezia", u"SP", u"0187 5550130", u"", u"", Web::None},
    {u"Idraulica L'Angolo di Lombardi", u"Via Po 126", u"73048", u"Nardò", u"LE", u"0833 5550131", u"", u"", Web::Start},
    {u"Fontana Officina", u"Vicolo Corto 87", u"47121", u"Forlì", u"FC", u"0543 5550132", u"", u"posta@fontana-officina.example", Web::None},
    {u"Ferramenta Rizzo", u"Piazza dell'Unità 24", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550133", u"0941 5560133", u"", Web::Plain},
    {u"Studio Tecnico Piras", u"Vicolo Corto 62", u"20097", u"San Donato Milanese", u"MI", u"02 5550134", u"", u"", Web::Start},
    {u"Pasticceria dei Fratelli Villa", u"Via Garibaldi 36", u"70121", u"Bari", u"BA", u"080 5550135", u"", u"", Web::Contact},
    {u"Studio Tecnico dei Fratelli Serra", u"Piazza dell'Unità 5", u"20097", u"San Donato Milanese", u"MI", u"02 5550136", u"", u"", Web::Large},
    {u"Gelateria L'Angolo di Barbieri", u"Via Niccolò Tommaseo 100", u"47121", u"Forlì", u"FC", u"0543 5550137", u"0543 5560137", u"posta@gelateria-l-angolo-di-barbieri.example", Web::Missing},
    {u"Ottica dei Fratelli Longo", u"Corso Vittorio Emanuele II 168", u"20121", u"Milano", u"MI", u"02 5550138", u"", u"", Web::None},
    {u"Falegnameria dei Fratelli Pellegrini", u"Piazza dell'Unità 120", u"47121", u"Forlì", u"FC", u"0543 5550139", u"", u"", Web::Start},
    {u"Officina L'Angolo di Serra", u"Largo Sant'Ambrogio 84", u"19121", u"La Spezia", u"SP", u"0187 5550140", u"", u"", Web::None},
    {u"Pasticceria Gatti", u"Via 25 Aprile 166", u"42121", u"Reggio Emilia", u"RE", u"0522 5550141", u"0522 5560141", u"", Web::Plain},
    {u"Ferramenta dei Fratelli Bianchi", u"Viale della Libertà 140", u"00184", u"Roma", u"RM", u"06 5550142", u"", u"posta@ferramenta-dei-fratelli-bianchi.example", Web::Start},
    {u"Ottica L'Angolo di Sartori", u"Piazza dell'Unità 35", u"10121", u"Torino", u"TO", u"011 5550143", u"", u"", Web::Contact},
    {u"Falegnameria Dell'Orto", u"Corso Vittorio Emanuele II 44", u"22063", u"Cantù", u"CO", u"031 5550144", u"", u"", Web::Large},
    {u"Fontana Falegnameria", u"Largo Sant'Ambrogio 22", u"73048", u"Nardò", u"LE", u"0833 5550145", u"0833 5560145", u"", Web::Missing},
    {u"Falegnameria dei Fratelli Dell'Orto", u"Piazza dell'Unità 78", u"20097", u"San Donato Milanese", u"MI", u"02 5550146", u"", u"", Web::None},
    {u"Farmacia Ferrari", u"Via Garibaldi 122", u"70121", u"Bari", u"BA", u"080 5550147", u"", u"posta@farmacia-ferrari.example", Web::Start},
    {u"Elettricità Pellegrini", u"Piazza dell'Unità 181", u"20097", u"San Donato Milanese", u"MI", u"02 5550148", u"", u"", Web::None},
    {u"Morelli Gelateria", u"Vicolo Corto 176", u"22063", u"Cantù", u"CO", u"031 5550149", u"031 5560149", u"", Web::Plain},
    {u"Fabbri Farmacia", u"Viale della Libertà 52", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550150", u"", u"", Web::Start},
    {u"Morelli Caffè", u"Via Niccolò Tommaseo 120", u"67100", u"L'Aquila", u"AQ", u"0862 5550151", u"", u"", Web::Contact},
    {u"Ottica Ferrari", u"Viale della Libertà 187", u"19121", u"La Spezia", u"SP", u"0187 5550152", u"", u"posta@ottica-ferrari.example", Web::Large},
    {u"Ferramenta dei Fratelli Morelli", u"Vicolo Corto 25", u"20097", u"San Donato Milanese", u"MI", u"02 5550153", u"02 5560153", u"", Web::Missing},
    {u"Caruso Officina", u"Via Po 96", u"19121", u"La Spezia", u"SP", u"0187 5550154", u"", u"", Web::None},
    {u"Nicolò Ottica", u"Largo Sant'Ambrogio 97", u"73048", u"Nardò", u"LE", u"0833 5550155", u"", u"", Web::Start},
    {u"Dell'Orto Ottica", u"Corso Vittorio Emanuele II 46", u"22063", u"Cantù", u"CO", u"031 5550156", u"", u"", Web::None},
    {u"Termoidraulica Leone", u"Via Niccolò Tommaseo 145", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550157", u"0941 5560157", u"posta@termoidraulica-leone.example", Web::Plain},
    {u"Ferramenta L'Angolo di Ferrari", u"Via Niccolò Tommaseo 184", u"42121", u"Reggio Emilia", u"RE", u"0522 5550158", u"", u"", Web::Start},
    {u"Bianchi Fioreria", u"Vicolo Corto 181", u"00184", u"Roma", u"RM", u"06 5550159", u"", u"", Web::Contact},
    {u"Leone Ottica", u"Via 25 Aprile 60", u"20121", u"Milano", u"MI", u"02 5550160", u"", u"", Web::Large},
    {u"Caffè L'Angolo di D'Angelo", u"Largo Sant'Ambrogio 61", u"22063", u"Cantù", u"CO", u"031 5550161", u"031 5560161", u"", Web::Missing},
    {u"Fioreria Villa", u"Corso Vittorio Emanuele II 130", u"73048", u"Nardò", u"LE", u"0833 5550162", u"", u"posta@fioreria-villa.example", Web::None},
    {u"Ottica Rossi", u"Largo Sant'Ambrogio 68", u"67100", u"L'Aquila", u"AQ", u"0862 5550163", u"", u"", Web::Start},
    {u"Elettricità Morelli", u"Largo Sant'Ambrogio 4", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550164", u"", u"", Web::None},
    {u"Panificio L'Angolo di Barbieri", u"Via Garibaldi 1", u"20097", u"San Donato Milanese", u"MI", u"02 5550165", u"02 5560165", u"", Web::Plain},
    {u"Ferramenta L'Angolo di Leone", u"Strada Provinciale 119", u"19121", u"La Spezia", u"SP", u"0187 5550166", u"", u"", Web::Start},
    {u"Ottica L'Angolo di Ferrari", u"Strada Provinciale 76", u"10121", u"Torino", u"TO", u"011 5550167", u"", u"posta@ottica-l-angolo-di-ferrari.example", Web::Contact},
    {u"Caffè L'Angolo di Fontana", u"Piazza dell'Unità 160", u"67100", u"L'Aquila", u"AQ", u"0862 5550168", u"", u"", Web::Large},
    {u"Caffè Gatti", u"Piazza dell'Unità 170", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550169", u"0941 5560169", u"", Web::Missing},
    {u"Marchetti Fioreria", u"Via Garibaldi 32", u"42121", u"Reggio Emilia", u"RE", u"0522 5550170", u"", u"", Web::None},
    {u"Officina L'Angolo di Bianchi", u"Via Po 97", u"70121", u"Bari", u"BA", u"080 5550171", u"", u"", Web::Start},
    {u"Falegnameria dei Fratelli Serra", u"Via Po 140", u"20097", u"San Donato Milanese", u"MI", u"02 5550172", u"", u"posta@falegnameria-dei-fratelli-serra.example", Web::None},
    {u"Libreria Dell'Orto", u"Corso Vittorio Emanuele II 131", u"47121", u"Forlì", u"FC", u"0543 5550173", u"0543 5560173", u"", Web::Plain},
    {u"Sartori Farmacia", u"Viale della Libertà 141", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550174", u"", u"", Web::Start},
    {u"Nicolò Studio Tecnico", u"Via 25 Aprile 26", u"42121", u"Reggio Emilia", u"RE", u"0522 5550175", u"", u"", Web::Contact},
    {u"Ottica L'Angolo di Conti", u"Corso Vittorio Emanuele II 31", u"19121", u"La Spezia", u"SP", u"0187 5550176", u"", u"", Web::Large},
    {u"Dell'Orto Idraulica", u"Largo Sant'Ambrogio 79", u"42121", u"Reggio Emilia", u"RE", u"0522 5550177", u"0522 5560177", u"posta@dell-orto-idraulica.example", Web::Missing},
    {u"Idraulica dei Fratelli Caruso", u"Via Garibaldi 115", u"19121", u"La Spezia", u"SP", u"0187 5550178", u"", u"", Web::None},
    {u"Libreria dei Fratelli Rossi", u"Vicolo Corto 117", u"10121", u"Torino", u"TO", u"011 5550179", u"", u"", Web::Start},
    {u"Ottica Donati", u"Via Garibaldi 22", u"67100", u"L'Aquila", u"AQ", u"0862 5550180", u"", u"", Web::None},
    {u"Ottica L'Angolo di Rossi", u"Vicolo Corto 160", u"98076", u"Sant'Agata di Militello", u"ME", u"0941 5550181", u"0941 5560181", u"", Web::Plain},
    {u"Panificio L'Angolo di Lombardi", u"Corso Vittorio Emanuele II 7", u"67100", u"L'Aquila", u"AQ", u"0862 5550182", u"", u"posta@panificio-l-angolo-di-lombardi.example", Web::Start},
    {u"Idraulica dei Fratelli Rizzo", u"Via Garibaldi 175", u"70121", u"Bari", u"BA", u"080 5550183", u"", u"", Web::Contact},
};
// clang-format on

} // namespace

std::span<const ItalianBusiness> ItalianBusinesses() {
    return businesses;
}

QString PathNameOf(int number) {
    return SlugOf(businesses[number].Name) + u'-' + QString::number(number);
}

int ItalianPageCount() {
    return (static_cast<int>(std::size(businesses)) + ListingsPerPage - 1) / ListingsPerPage;
}

std::vector<int> NumbersOnPage(int page) {
    std::vector<int> numbers;
    if (page > 1)
        numbers.push_back(0);
    for (int number = (page - 1) * ListingsPerPage;
         number < page * ListingsPerPage && number < static_cast<int>(std::size(businesses)); ++number)
        numbers.push_back(number);
    return numbers;
}

} // namespace Brindle::Demo
