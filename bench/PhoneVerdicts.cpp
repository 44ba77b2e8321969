// Reads lines "region, tab, text" from standard input and prints "verdict, tab, E.164" for each, as `ReadPhone` has it.
// bench/phones-against-python holds that against another reader of phone numbers.

#include "toolkit/Phone.h"

#include <cstdio>
#include <iostream>
#include <string>

int main() {
    using namespace Brindle;
    std::string line;
    while (std::getline(std::cin, line)) {
        const QString row = QString::fromStdString(line);
        const qsizetype tab = row.indexOf(u'\t');
        const std::optional<PhoneNumber> number = ReadPhone(QStringView(row).sliced(tab + 1), row.first(qMax(tab, 0)));
        if (number)
            std::printf("%s\t%s\n", number->Verdict == PhoneVerdict::Valid ? "valid" : "possible",
                        qPrintable(number->E164));
        else
            std::puts("none\t");
    }
    return 0;
}
