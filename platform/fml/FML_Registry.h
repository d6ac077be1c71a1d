// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML_Program.h>
#include <orvlang/platform/fml/FML_Symbol.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class KIT_String;

/// The look-ups of names in expressions. Both return whether the name is known.
struct FML_NameSource {
    /// The names that are tried before all others. May be null.
    bool (*fixed)(const char *name, KIT_String &value) = nullptr;
    /// Variables. May be null.
    bool (*variable)(const char *name, KIT_String &value, int thread) = nullptr;
};

/// Frees a symbol when it goes out of scope.
struct FML_SymbolDeleter {
    void operator()(FML_SYMBOL *symbol) const { fml_FreeSymbol(symbol); }
};
using FML_SymbolPointer = std::unique_ptr<FML_SYMBOL, FML_SymbolDeleter>;

/// The functions, types and names that expressions know, for the whole process. Used by one thread at a time.
class FML_Registry {
public:
    static FML_Registry &get();

    void addFunction(FML_FUNCTION *function, const char *help);
    /// Finds a function of a host before one of the library.
    FML_Callee findFunction(std::string_view name);
    /// The usage and the description of each function, by name. Empty for a function that has none.
    std::map<std::string, std::string> getHelp();

    void addType(const FML_TYPEDEF *type, bool front);
    const FML_TYPEDEF *findType(int code) const;
    /// Returns the symbol of the first type that knows `name`; null when none does.
    FML_SymbolPointer resolve(const char *name, int thread) const;

    FML_NameSource &getNames() { return names; }

    int getOptimization() const { return optimization; }
    void setOptimization(int level);

    /// Changes with everything that a compiled expression depends on.
    unsigned getGeneration() const { return generation; }

    static bool takesArguments(const FML_Callee &callee, unsigned count);
    static bool isPure(const FML_Callee &callee);

private:
    struct HostFunction {
        FML_FUNCTION *function;   // borrowed
        const char *help;         // borrowed; may be null
    };

    void fillLibrary();

    std::vector<HostFunction> hostFunctions;
    std::unordered_map<std::string_view, FML_Callee> functions;   // filled at the first look-up
    std::vector<const FML_TYPEDEF *> types;                       // borrowed
    FML_NameSource names;
    int optimization = 1;
    unsigned generation = 0;
};
