#include <pt_platform/except.h>
#include <pt_platform/ut.h>
#include <pt_platform/vos.h>

#include <cstdlib>
#include <map>
#include <mutex>
#include <set>

namespace vos {

namespace {

// The class system's own errors.
struct UndefinedFunction {};
struct NotEnoughInputs {};
struct TooManyInputs {};
struct TooManyOutputs {};

template <typename Id>
[[noreturn]] void raise(const char* id, std::initializer_list<resource_core::MsgArg> arguments) {
    resource_core::BaseMsgID message("vos", id);
    std::size_t slot = 0;
    for (const auto& argument : arguments) {
        message.setArgument(slot++, argument);
    }
    throw foundation::core::except::Exception<Id>(message);
}

std::vector<std::string> splitName(const std::string& name) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t dot; (dot = name.find('.', start)) != std::string::npos; start = dot + 1) {
        parts.push_back(name.substr(start, dot - start));
    }
    parts.push_back(name.substr(start));
    return parts;
}

/// The live packages. Like the packages themselves, it is never destroyed: modules keep
/// calling into the class system until the process is gone.
std::map<std::string, VOSPackage*>& packages() {
    static auto* registry = new std::map<std::string, VOSPackage*>();
    return *registry;
}

void releaseMethod(VOSMethodInfo* method) {
    method->~VOSMethodInfo();
    utFree(method);
}

}  // namespace

// ---- Names and signatures ----

VOSNameID::VOSNameID(const char* name) : VOSNameID(std::string(name ? name : "")) {}

VOSNameID::VOSNameID(const std::string& name) {
    static auto* mutex = new std::mutex();
    static auto* names = new std::set<std::string>();  // interned for the life of the process
    std::lock_guard lock(*mutex);
    _name = &*names->insert(name).first;
}

VOSMethodSignature* VOSMethodSignature::createMethodSignature() { return new VOSMethodSignature(); }
VOSMethodSignature::~VOSMethodSignature() = default;
void VOSMethodSignature::addInputType(const VOSNameID& type) { _inputs.push_back(type); }
void VOSMethodSignature::addOutputType(const VOSNameID& type) { _outputs.push_back(type); }
void VOSMethodSignature::setOpenEndedInputs() { _openEnded = true; }

// ---- Method records ----

VOSMethodInfo::~VOSMethodInfo() = default;
std::string VOSMethodInfo::getDescription() const { return {}; }
std::string VOSMethodInfo::getDetailedDescription() const { return {}; }
int VOSMethodInfo::getMemberAccess() const { return 0; }
int VOSMethodInfo::getExtendedAccess() const { return 0; }
bool VOSMethodInfo::isConversion() const { return false; }
bool VOSMethodInfo::isAbstract() const { return false; }
bool VOSMethodInfo::isSealed() const { return false; }
bool VOSMethodInfo::isVisible() const { return true; }
bool VOSMethodInfo::isDestructible() const { return true; }
bool VOSMethodInfo::isLocked() const { return false; }
bool VOSMethodInfo::isExplicit() const { return false; }
bool VOSMethodInfo::doesMethodOverrideAllSignatures() const { return false; }

// ---- Class records ----

struct VOSClassInfo::Methods {
    bool loaded = false;
    std::vector<VOSMethodInfo*> records;
};

void* VOSClassInfo::operator new(std::size_t size) { return utMalloc(size); }
void VOSClassInfo::operator delete(void* memory) { utFree(memory); }

VOSClassInfo::~VOSClassInfo() {
    if (_methods) {
        for (VOSMethodInfo* method : _methods->records) {
            releaseMethod(method);
        }
        delete _methods;
    }
}

void VOSClassInfo::addMethod(VOSMethodInfo* method) {
    if (!_methods) {
        _methods = new Methods();
    }
    _methods->records.push_back(method);
}

const std::vector<VOSMethodInfo*>& VOSClassInfo::methods() {
    if (!_methods) {
        _methods = new Methods();
    }
    if (!_methods->loaded) {
        _methods->loaded = true;  // a failed load is not tried again
        loadMethods();
    }
    return _methods->records;
}

VOSMethodInfo* VOSClassInfo::findMethod(const std::string& name) {
    for (VOSMethodInfo* method : methods()) {
        if (method->getName() == name) {
            return method;
        }
    }
    return nullptr;
}

// ---- Package functions ----

namespace factory {

FunctionInfo::FunctionInfo(const char* name, MethodAttributes) : _name(name ? name : "") {}
FunctionInfo::~FunctionInfo() { delete _signature; }

void FunctionInfo::setSignature(FunctionSignature* signature) {
    delete _signature;
    _signature = signature;
}

void FunctionInfo::setInvoker(Invoker invoker, Function function) {
    _invoker = invoker;
    _function = function;
}

void FunctionInfo::call() const {
    if (_invoker && _function) {
        _invoker(_function);
    }
}

void FunctionTable::addFunction(FunctionInfo* function) { _functions.push_back(function); }

const FunctionInfo* FunctionTable::find(const std::string& name) const {
    for (const FunctionInfo* function : _functions) {
        if (function->getName() == name) {
            return function;
        }
    }
    return nullptr;
}

std::vector<std::string> FunctionTable::names() const {
    std::vector<std::string> out;
    for (const FunctionInfo* function : _functions) {
        out.push_back(function->getName());
    }
    return out;
}

// Function records come from the module's allocator as zeroed memory with a record built in
// it; they are ended in place and the memory goes back with free.
FunctionTable::~FunctionTable() {
    for (FunctionInfo* function : _functions) {
        function->~FunctionInfo();
        std::free(function);
    }
}

FunctionSignature* impl::Invoker::createSignature(const char* inputs, const char* output,
                                                  const char*) {
    return new FunctionSignature{inputs ? inputs : "", output ? output : ""};
}

void impl::Invoker::callVoid(FunctionInfo::Function function) { function(); }

void detail::initStringDataTypes() {}

}  // namespace factory

// ---- Package records and live packages ----

VOSPackageInfo::~VOSPackageInfo() = default;
std::string VOSPackageInfo::getDescription() const { return {}; }
std::string VOSPackageInfo::getDetailedDescription() const { return {}; }
VOSPackageInfo* VOSPackageInfo::attemptToLoadSubPackage(const std::string&) { return nullptr; }
VOSClassInfo* VOSPackageInfo::attemptToLoadClass(const std::string&) { return nullptr; }
factory::FunctionInfo* VOSPackageInfo::attemptToLoadFunction(const std::string&) { return nullptr; }
void* VOSPackageInfo::attemptToLoadType(const std::string&) { return nullptr; }
void* VOSPackageInfo::getMethodSelector() { return nullptr; }
bool VOSPackageInfo::isDestructible() const { return false; }
std::string VOSPackageInfo::getH1Line() const { return {}; }
std::string VOSPackageInfo::getHelpText() const { return {}; }

VOSPackage::VOSPackage(VOSPackageInfo* info) : _info(info) {}

void VOSPackage::addPackage(VOSPackageInfo* info) {
    auto& registry = packages();
    if (!registry.count(info->getName())) {
        registry[info->getName()] = new VOSPackage(info);
    }
}

VOSPackage* VOSPackage::getPackage(const VOSNameID& name) {
    const auto found = packages().find(name.str());
    return found == packages().end() ? nullptr : found->second;
}

void VOSPackage::addClass(VOSClassInfo* info) { _classes.push_back(info); }

VOSClassInfo* VOSPackage::findClass(const std::string& shortName) const {
    for (VOSClassInfo* info : _classes) {
        if (info->getShortName() == shortName) {
            return info;
        }
    }
    return nullptr;
}

const factory::FunctionInfo* VOSPackage::findFunction(const std::string& name) {
    if (!_functions) {
        _functions = std::make_unique<factory::FunctionTable>();
        _info->loadFunctions(*_functions);
    }
    return _functions->find(name);
}

std::vector<std::string> VOSPackage::functionNames() {
    findFunction("");
    return _functions->names();
}

const std::string& VOSPackage::getName() const { return _info->getName(); }

// ---- The host's side ----

namespace {

VOSMethodInfo* findMethod(const std::vector<std::string>& parts) {
    VOSPackage* package = VOSPackage::getPackage(VOSNameID(parts[0]));
    VOSClassInfo* info = package ? package->findClass(parts[1]) : nullptr;
    return info ? info->findMethod(parts[2]) : nullptr;
}

const factory::FunctionInfo* findFunction(const std::vector<std::string>& parts) {
    VOSPackage* package = VOSPackage::getPackage(VOSNameID(parts[0]));
    return package ? package->findFunction(parts[1]) : nullptr;
}

}  // namespace

bool isCallable(const std::string& qualifiedName) {
    const std::vector<std::string> parts = splitName(qualifiedName);
    return (parts.size() == 3 && findMethod(parts)) || (parts.size() == 2 && findFunction(parts));
}

std::vector<hvUniqueArray> invoke(const std::string& qualifiedName, std::uint32_t nargout,
                                  const std::vector<const hvArray*>& inputs) {
    const std::vector<std::string> parts = splitName(qualifiedName);
    const auto given = static_cast<std::int64_t>(inputs.size());
    if (parts.size() == 2) {
        const factory::FunctionInfo* function = findFunction(parts);
        if (!function) {
            raise<UndefinedFunction>("UndefinedFunction", {qualifiedName});
        }
        if (given > 0) {
            raise<TooManyInputs>("TooManyInputs", {qualifiedName, std::int64_t{0}, given});
        }
        if (nargout > 0) {
            raise<TooManyOutputs>("TooManyOutputs",
                                  {qualifiedName, std::int64_t{0}, std::int64_t{nargout}});
        }
        function->call();
        return {};
    }
    VOSMethodInfo* method = parts.size() == 3 ? findMethod(parts) : nullptr;
    if (!method) {
        raise<UndefinedFunction>("UndefinedFunction", {qualifiedName});
    }
    const VOSMethodSignature* signature = method->getSignature();
    const auto declared = static_cast<std::int64_t>(signature->numberOfInputs());
    if (!signature->hasOpenEndedInputs() && given < declared) {
        raise<NotEnoughInputs>("NotEnoughInputs", {qualifiedName, declared, given});
    }
    if (!signature->hasOpenEndedInputs() && given > declared) {
        raise<TooManyInputs>("TooManyInputs", {qualifiedName, declared, given});
    }
    if (nargout > signature->numberOfOutputs()) {
        raise<TooManyOutputs>(
            "TooManyOutputs",
            {qualifiedName, static_cast<std::int64_t>(signature->numberOfOutputs()),
             std::int64_t{nargout}});
    }
    std::uint32_t nlhs = 0;
    hvArray* plhs[1] = {nullptr};
    std::vector<const hvArray*> prhs = inputs;
    method->invoke(nullptr, nlhs, plhs, static_cast<std::int32_t>(prhs.size()), prhs.data());
    std::vector<hvUniqueArray> outputs;
    if (nlhs >= 1 && plhs[0]) {
        outputs.emplace_back(plhs[0]);
    }
    return outputs;
}

std::vector<std::string> visibleMethods(const std::string& qualifiedClassName) {
    const std::vector<std::string> parts = splitName(qualifiedClassName);
    if (parts.size() != 2) {
        return {};
    }
    VOSPackage* package = VOSPackage::getPackage(VOSNameID(parts[0]));
    VOSClassInfo* info = package ? package->findClass(parts[1]) : nullptr;
    std::vector<std::string> names;
    if (info) {
        for (const VOSMethodInfo* method : info->methods()) {
            if (method->isVisible()) {
                names.push_back(method->getName());
            }
        }
    }
    return names;
}

}  // namespace vos
