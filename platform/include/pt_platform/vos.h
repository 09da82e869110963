#pragma once

// The class system of the host. A module registers a package record; the package holds class
// records and package functions. A class record loads its method records when the host first
// asks for them, a package record its functions likewise. The host finds a method as
// "Package.Class.method" or a function as "Package.function", checks the counts that a
// method's signature declares, and invokes it with the method frame: an unused value, the
// output count, the output slots, the input count and the inputs.

#include <pt_platform/export.h>
#include <pt_platform/hv.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vos {

/// An interned name: equal names share one text.
class PT_PLATFORM_API VOSNameID {
public:
    explicit VOSNameID(const char* name);
    explicit VOSNameID(const std::string& name);

    const std::string& str() const { return *_name; }
    bool operator==(const VOSNameID& other) const { return _name == other._name; }

private:
    const std::string* _name;
};

/// The declared input and output types of a method, and whether more inputs may follow.
class PT_PLATFORM_API VOSMethodSignature {
public:
    /// A new empty signature, owned by the method record it is stored in.
    static VOSMethodSignature* createMethodSignature();
    virtual ~VOSMethodSignature();

    void addInputType(const VOSNameID& type);
    void addOutputType(const VOSNameID& type);
    /// Marks the input list as open-ended: any number of inputs may follow the declared ones.
    void setOpenEndedInputs();

    std::size_t numberOfInputs() const { return _inputs.size(); }
    std::size_t numberOfOutputs() const { return _outputs.size(); }
    bool hasOpenEndedInputs() const { return _openEnded; }

private:
    VOSMethodSignature() = default;

    std::vector<VOSNameID> _inputs;
    std::vector<VOSNameID> _outputs;
    bool _openEnded = false;
};

/// A method record.
class PT_PLATFORM_API VOSMethodInfo {
public:
    virtual ~VOSMethodInfo();

    virtual const std::string& getName() const = 0;
    virtual std::string getDescription() const;
    virtual std::string getDetailedDescription() const;
    virtual int getMemberAccess() const;
    virtual int getExtendedAccess() const;
    virtual const VOSMethodSignature* getSignature() const = 0;
    /// Runs the method. A method with a result stores a new value in plhs[0] and sets nlhs to
    /// 1; the host then owns it. Errors are raised as exceptions.
    virtual void invoke(void* unused, std::uint32_t& nlhs, hvArray** plhs, std::int32_t nrhs,
                        const hvArray** prhs) = 0;
    /// Whether the method is a conversion of its class; the host asks, our methods say no.
    virtual bool isConversion() const;
    virtual bool isStatic() const = 0;
    virtual bool isAbstract() const;
    virtual bool isSealed() const;
    /// Whether listings of the class show the method; a hidden method can still be called.
    virtual bool isVisible() const;
    virtual bool isDestructible() const;
    virtual bool isLocked() const;
    virtual bool isExplicit() const;
    virtual bool doesMethodOverrideAllSignatures() const;
};

/// A class record. Records of a class's methods are allocated with this class's operator new,
/// from the host's allocator, and released with utFree after their destructor has run.
class PT_PLATFORM_API VOSClassInfo {
public:
    static void* operator new(std::size_t size);
    static void operator delete(void* memory);

    virtual ~VOSClassInfo();
    virtual const std::string& getShortName() const = 0;
    virtual const std::string& getFullName() const = 0;
    /// Adds the method records with addMethod; the host calls it once, on first demand.
    virtual void loadMethods() = 0;
    /// An instance of the class and its end.
    virtual void* createInstance() = 0;
    virtual void destroyInstance(void* instance) = 0;
    virtual bool isHandleClass() const = 0;
    virtual bool isSealedClass() const = 0;
    virtual bool isEnumeration() const = 0;

    /// Takes ownership of a method record.
    void addMethod(VOSMethodInfo* method);
    /// The method records, loaded on first demand, in the order they were added.
    const std::vector<VOSMethodInfo*>& methods();
    VOSMethodInfo* findMethod(const std::string& name);

private:
    struct Methods;
    Methods* _methods = nullptr;
};

namespace factory {

struct MethodAttributes {};

/// The signature of a package function: input and output types as text.
struct PT_PLATFORM_API FunctionSignature {
    std::string inputs;
    std::string output;
};

/// A package function: its name, its signature, the function and how to call it.
class PT_PLATFORM_API FunctionInfo {
public:
    using Function = void (*)();
    using Invoker = void (*)(Function);

    FunctionInfo(const char* name, MethodAttributes attributes);
    ~FunctionInfo();

    const std::string& getName() const { return _name; }
    void setSignature(FunctionSignature* signature);
    const FunctionSignature* getSignature() const { return _signature; }
    void setInvoker(Invoker invoker, Function function);
    /// Runs the function through its invoker.
    void call() const;

private:
    std::string _name;
    FunctionSignature* _signature = nullptr;
    Invoker _invoker = nullptr;
    Function _function = nullptr;
};

/// Where a package record adds its functions.
class PT_PLATFORM_API FunctionTable {
public:
    /// Takes a finished function record; the table owns it.
    void addFunction(FunctionInfo* function);
    const FunctionInfo* find(const std::string& name) const;
    std::vector<std::string> names() const;
    ~FunctionTable();

private:
    std::vector<FunctionInfo*> _functions;
};

namespace impl {
struct PT_PLATFORM_API Invoker {
    /// A signature from an input list text and an output type; slot names the result, if any.
    static FunctionSignature* createSignature(const char* inputs, const char* output,
                                              const char* slot);
    /// Calls a function of no arguments and no result.
    static void callVoid(FunctionInfo::Function function);
};
}  // namespace impl

namespace detail {
/// Prepares the string types that function signatures name; idempotent.
PT_PLATFORM_API void initStringDataTypes();
}  // namespace detail

}  // namespace factory

/// A package record, made by a module.
class PT_PLATFORM_API VOSPackageInfo {
public:
    virtual ~VOSPackageInfo();
    virtual const std::string& getName() const = 0;
    virtual std::string getDescription() const;
    virtual std::string getDetailedDescription() const;
    virtual VOSPackageInfo* attemptToLoadSubPackage(const std::string& name);
    virtual VOSClassInfo* attemptToLoadClass(const std::string& name);
    virtual factory::FunctionInfo* attemptToLoadFunction(const std::string& name);
    virtual void* attemptToLoadType(const std::string& name);
    virtual void* getMethodSelector();
    /// Adds the package's functions to the table; the host calls it once, on first demand.
    virtual void loadFunctions(factory::FunctionTable& table) = 0;
    virtual bool isDestructible() const;
    /// Whether the package is one of the host's own; modules say no.
    virtual bool isBuiltIn() const = 0;
    virtual std::string getH1Line() const;
    virtual std::string getHelpText() const;
};

/// A live package of the host.
class PT_PLATFORM_API VOSPackage {
public:
    /// Registers a package record; the host keeps it for the life of the process.
    static void addPackage(VOSPackageInfo* info);
    /// The live package of a name, or null.
    static VOSPackage* getPackage(const VOSNameID& name);

    void addClass(VOSClassInfo* info);
    VOSClassInfo* findClass(const std::string& shortName) const;
    const factory::FunctionInfo* findFunction(const std::string& name);
    std::vector<std::string> functionNames();
    const std::string& getName() const;

private:
    explicit VOSPackage(VOSPackageInfo* info);

    VOSPackageInfo* _info;
    std::vector<VOSClassInfo*> _classes;
    std::unique_ptr<factory::FunctionTable> _functions;
};

// ---- What the host does with them ----

/// Runs "Package.Class.method" or "Package.function" with the inputs and returns up to
/// nargout outputs. Raises vos:UndefinedFunction for an unknown name, vos:NotEnoughInputs and
/// vos:TooManyInputs when a method that is not open-ended gets another number of inputs than
/// it declares, and vos:TooManyOutputs when more outputs are asked than the method declares.
/// Errors of the method itself pass through.
PT_PLATFORM_API std::vector<hvUniqueArray> invoke(const std::string& qualifiedName,
                                                  std::uint32_t nargout,
                                                  const std::vector<const hvArray*>& inputs);
/// Whether a name is a method or a package function.
PT_PLATFORM_API bool isCallable(const std::string& qualifiedName);
/// The names of the visible methods of "Package.Class", in the class's order; empty for an
/// unknown class.
PT_PLATFORM_API std::vector<std::string> visibleMethods(const std::string& qualifiedClassName);

}  // namespace vos
