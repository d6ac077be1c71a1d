// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_Registry.h>

#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Library.h>
#include <orvlang/platform/fml/fml_Vector.h>
#include <orvlang/platform/osl/KIT_Immortal.h>

#include <algorithm>
#include <cstdlib>

namespace {

void freeText(FML_SYMBOL *symbol) {
    std::free(symbol->value.text);
}

void allocateVector(FML_SYMBOL *symbol) {
    symbol->value.vector = std::make_unique<fml_Vector>().release();
}

void freeVector(FML_SYMBOL *symbol) {
    const std::unique_ptr<fml_Vector> owner(symbol->value.vector);
}

constexpr FML_TYPEDEF theFloatType = { FML_FLOAT, "float", nullptr, nullptr, nullptr, nullptr, nullptr, {} };
constexpr FML_TYPEDEF theStringType = {
    FML_STRING, "string", nullptr, freeText, nullptr, nullptr, nullptr, {}
};
constexpr FML_TYPEDEF theVectorType = { FML_VECTOR, "vector", allocateVector, freeVector,
                                        nullptr,    nullptr,  nullptr,        {} };

}   // namespace

FML_Registry &FML_Registry::get() {
    // Never destroyed: what a host does while the process ends may still evaluate.
    static KIT_Immortal<FML_Registry> theRegistry;
    return theRegistry.object;
}

void FML_Registry::addFunction(FML_FUNCTION *function, const char *help) {
    if (!function || !function->name)
        return;
    const auto sameName = [&](const HostFunction &other) {
        return std::string_view(other.function->name) == function->name;
    };
    const auto older = std::find_if(hostFunctions.begin(), hostFunctions.end(), sameName);
    if (older == hostFunctions.end()) {
        hostFunctions.push_back({ function, help });
    } else {
        FML_FUNCTION *replaced = older->function;
        *older = { function, help };
        if (replaced->replaced)
            replaced->replaced(replaced);
    }
    functions.clear();
    generation++;
    if (function->added)
        function->added(function);
}

void FML_Registry::fillLibrary() {
    for (const FML_LibraryRows &rows :
         { theMathFunctions, theTextFunctions, theWordFunctions, theValueFunctions })
        for (const FML_LibraryFunction &row : rows)
            functions[row.name] = { &row, nullptr };
    for (const HostFunction &host : hostFunctions)
        functions[host.function->name] = { nullptr, host.function };
}

FML_Callee FML_Registry::findFunction(std::string_view name) {
    if (functions.empty())
        fillLibrary();
    const auto found = functions.find(name);
    return found == functions.end() ? FML_Callee() : found->second;
}

std::map<std::string, std::string> FML_Registry::getHelp() {
    std::map<std::string, std::string> entries;
    for (const FML_LibraryRows &rows :
         { theMathFunctions, theTextFunctions, theWordFunctions, theValueFunctions })
        for (const FML_LibraryFunction &row : rows)
            entries[row.name] = std::string(row.usage) + '\n' + row.help;
    for (const HostFunction &host : hostFunctions)
        entries[host.function->name] = host.help ? host.help : "";
    return entries;
}

bool FML_Registry::takesArguments(const FML_Callee &callee, unsigned count) {
    if (callee.library)
        return callee.library->signature.takes(count);
    const auto wanted = static_cast<unsigned>(callee.host->argumentCount);
    return callee.host->openEnded ? count >= wanted : count == wanted;
}

bool FML_Registry::isPure(const FML_Callee &callee) {
    return callee.library || !(callee.host->flags & (FML_VOLATILE | FML_UNSAFE));
}

void FML_Registry::addType(const FML_TYPEDEF *type, bool front) {
    if (!type || findType(type->code))
        return;
    types.insert(front ? types.begin() : types.end(), type);
    generation++;
}

const FML_TYPEDEF *FML_Registry::findType(int code) const {
    for (const FML_TYPEDEF *type : { &theFloatType, &theStringType, &theVectorType })
        if (type->code == code)
            return type;
    const auto hasCode = [&](const FML_TYPEDEF *type) { return type->code == code; };
    const auto found = std::find_if(types.begin(), types.end(), hasCode);
    return found == types.end() ? nullptr : *found;
}

FML_SymbolPointer FML_Registry::resolve(const char *name, int thread) const {
    // By index: a resolver may add types.
    for (std::size_t i = 0; i < types.size(); i++)
        if (types[i]->resolve)
            if (FML_SYMBOL *symbol = types[i]->resolve(name, thread))
                return FML_SymbolPointer(symbol);
    return nullptr;
}

void FML_Registry::setOptimization(int level) {
    optimization = level;
    generation++;
}

void fml_AddFunction(FML_FUNCTION *function, const char *help) {
    FML_Registry::get().addFunction(function, help);
}

void fml_AddVariableType(const FML_TYPEDEF *type, int front) {
    FML_Registry::get().addType(type, front != 0);
}

FML_SYMBOL *fml_AllocSymbol(int typeCode, int /*thread*/) {
    const FML_TYPEDEF *type = FML_Registry::get().findType(typeCode);
    if (!type)
        return nullptr;
    auto symbol = std::make_unique<FML_SYMBOL>(FML_SYMBOL{ type, { nullptr } });
    if (type->allocate)
        type->allocate(symbol.get());
    return symbol.release();
}

void fml_FreeSymbol(FML_SYMBOL *symbol) {
    const std::unique_ptr<FML_SYMBOL> owner(symbol);
    if (owner && owner->type->release)
        owner->type->release(owner.get());
}
