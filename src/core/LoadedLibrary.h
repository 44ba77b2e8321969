#pragma once

#include <QLibrary>

// Libraries that many a command does without take longer to load, with all that they need themselves, than such a
// command takes to run. So they are loaded by the first call of them. For each there is a list of the functions in use:
//   #define ZIP_FUNCTIONS(FUNCTION) FUNCTION(zip_, open) FUNCTION(zip_, close)
// of which these make a table `Table` with a member for each, and a function `Name` that gives it:
//   BRINDLE_FUNCTION_TABLE(Table, ZIP_FUNCTIONS);
//   BRINDLE_LOADED_LIBRARY(Table, Name, ZIP_FUNCTIONS, "libzip.so.1")   loaded by the first call, which may throw
//   `Failure` BRINDLE_LINKED_LIBRARY(Table, Name, ZIP_FUNCTIONS)                  where the library is linked into the
//   program

#define BRINDLE_TABLE_MEMBER(prefix, name) decltype(&::prefix##name) name = nullptr;
#define BRINDLE_TABLE_FOUND(prefix, name) library.Find(table.name, #prefix #name);
#define BRINDLE_TABLE_LINKED(prefix, name) table.name = &::prefix##name;

#define BRINDLE_FUNCTION_TABLE(Table, FUNCTIONS)                                                                       \
    struct Table {                                                                                                     \
        FUNCTIONS(BRINDLE_TABLE_MEMBER)                                                                                \
    }

#define BRINDLE_LOADED_LIBRARY(Table, Name, FUNCTIONS, fileName)                                                       \
    const Table& Name() {                                                                                              \
        static const Table functions = [] {                                                                            \
            LoadedLibrary library(fileName);                                                                           \
            Table table;                                                                                               \
            FUNCTIONS(BRINDLE_TABLE_FOUND)                                                                             \
            return table;                                                                                              \
        }();                                                                                                           \
        return functions;                                                                                              \
    }

#define BRINDLE_LINKED_LIBRARY(Table, Name, FUNCTIONS)                                                                 \
    const Table& Name() {                                                                                              \
        static const Table functions = [] {                                                                            \
            Table table;                                                                                               \
            FUNCTIONS(BRINDLE_TABLE_LINKED)                                                                            \
            return table;                                                                                              \
        }();                                                                                                           \
        return functions;                                                                                              \
    }

namespace Brindle {

/// A library that stays loaded to the end of the program.
class LoadedLibrary {
public:
    /// Throws `Failure` with the system's reason.
    explicit LoadedLibrary(const char* fileName);

    /// The function of that name; throws `Failure` when the library has none.
    template <typename Function>
    void Find(Function& function, const char* name) {
        function = reinterpret_cast<Function>(Find(name));
    }

private:
    QFunctionPointer Find(const char* name);

    QLibrary library_;
};

} // namespace Brindle
