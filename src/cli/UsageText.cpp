#include "cli/CommandLine.h"
#include "workbench/Product.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto usage = uR"(Brindle %1: turns online business directories into sales leads

Usage: brindle-cli COMMAND [OPTION...]

Commands:
  sites                     the directories: code, base address, label
  harvest --site CODE --start URL
                            walk the result pages from URL on, write the leads
  parse --site CODE PAGE...
                            read saved result pages, in the order given, as one harvest
  emails URL                the addresses of one business website, joined by ";"
  fetch URL                 one page through the page fetcher, to standard output
  demo                      serve the demo directories until Ctrl-C; prints the sites file to use
  settings                  the settings in force, in the format of the settings file
  language FILE             what each tag of a language file reads as; for translators
  next --url URL PAGE       the address of the next result page; nothing where there is none
  explain --url URL PAGE    what was found on a page of any directory, why, and what else was considered; JSON
  teach --url URL PAGE --example CAPTION=TEXT...
                            a recipe from examples on a saved page
  run SEARCHES              the searches of a CSV table, one after the other; goes on where it was
  work                      take searches from the store and make them
  searches add FILE|list|retry|cancel
                            manage the searches that wait in the store
  leads                     export leads from the store
  status                    what is in the store
  merge FILE...             lists of leads into one
  diagnose                  versions, folders, engine, store, recipes and what is wrong; for a report

All commands:
  --sites FILE              deployment file instead of the program's and the user's
  --settings FILE           settings file instead of the user's; it is read, never written
  --set KEY=VALUE           override one setting by its key in the settings file, or one option by its two words
                            (--set store.keep=false); repeatable
  --quiet                   no progress on standard error
  --help                    this text
  --version                 the version

Where to begin (harvest):
  --start URL               the first result page
  --what W                  the search instead of --start, where the directory knows its search address
  --place P                 the place of that search
  --demo                    start the demo directories in this process and harvest from them
  --browser static|web      fetch and parse (default), or the Chromium engine
  --max-pages N             stop after N result pages

Which directory (harvest, parse):
  --site CODE               one of those that "sites" lists; AUTO: any website; of leads: only those of this directory
  --recipe FILE             the directory that a recipe describes
  --details                 read each record's own page too

Leads (harvest, parse, leads, merge):
  --out FILE                where the result goes, also of teach; default: standard output
  --format csv|csv-sheet|jsonl|xlsx|vcf
                            default: by the suffix of FILE, else csv; csv-sheet: for spreadsheets
  --columns LIST            further columns by name, with commas, in this order
  --check-mx                ask whether a mail domain takes mail

Saved pages (parse, next, explain, teach):
  --url URL                 the address under which the page was saved
  --variant 1|2             parse: read the page in this layout, without asking for the list markers
  --markup as-is|site       parse: the text as it stands, or a whole document delivered as the browser would (default)
  --example CAPTION=TEXT    teach: what one record shows; repeatable

Waiting:
  --pace N                  every wait times N, 0 to 1; default 1 (harvest, parse, emails, fetch, run, work)
  --patience S              give up when no results page came up for S seconds; default 60. With a list of proxies it
                            is also the time for one address (harvest, parse, emails, fetch)

One page (fetch):
  --direct                  a single attempt without delay or choice of a proxy
  --utf8                    decode the body once more as UTF-8

The store:
  --store TARGET            a file: SQLite; postgresql://...: PostgreSQL. harvest and parse keep leads only where it is
                            given; the others use the window's store without it
  --since DATE              leads: found on this day or later
  --new                     leads: only those of businesses that were not known before
  --find TEXT               leads: each word begins a word of some field
  --json                    status, searches: JSON lines

Many searches (run, work):
  --jobs N                  at most N searches at once; default 1
  --limit-per-host N        at most N searches at one host at once
  --ignore-robots           do not ask robots.txt
  --wait                    work: wait for more searches

The demo (demo):
  --listings N              one demo directory lists N businesses, its pages made as they are asked for

Exit status: 0 done, 1 the work failed, 2 wrong usage, 130 stopped by Ctrl-C
)";

} // namespace

QString UsageText() {
    return QString::fromUtf16(usage).arg(ProductVersion());
}

} // namespace Brindle
