#include <pt_platform/except.h>
#include <pt_platform/ut.h>
#include <pt_platform/vos.h>

#include <gtest/gtest.h>

#include <new>

namespace {

/// A method of one output: the number of inputs it was given.
class CountingMethod : public vos::VOSMethodInfo {
public:
    CountingMethod(std::string name, bool visible) : _name(std::move(name)), _visible(visible) {
        _signature = vos::VOSMethodSignature::createMethodSignature();
        _signature->addOutputType(vos::VOSNameID("any"));
    }
    ~CountingMethod() override { delete _signature; }

    const std::string& getName() const override { return _name; }
    const vos::VOSMethodSignature* getSignature() const override { return _signature; }
    void invoke(void*, std::uint32_t& nlhs, hvArray** plhs, std::int32_t nrhs,
                const hvArray**) override {
        plhs[0] = hvCreateDoubleScalar(nrhs);
        nlhs = 1;
    }
    bool isStatic() const override { return true; }
    bool isVisible() const override { return _visible; }

private:
    std::string _name;
    bool _visible;
    vos::VOSMethodSignature* _signature;
};

class ToyClass : public vos::VOSClassInfo {
public:
    const std::string& getShortName() const override { return _short; }
    const std::string& getFullName() const override { return _full; }
    void loadMethods() override {
        ++loads;
        for (const auto& [name, visible] :
             {std::pair{"two", true}, {"open", true}, {"quiet", true}, {"hidden", false}}) {
            void* memory = vos::VOSClassInfo::operator new(sizeof(CountingMethod));
            addMethod(new (memory) CountingMethod(name, visible));
        }
    }
    void* createInstance() override { return nullptr; }
    void destroyInstance(void*) override {}
    bool isHandleClass() const override { return true; }
    bool isSealedClass() const override { return true; }
    bool isEnumeration() const override { return false; }

    int loads = 0;

private:
    std::string _short = "Toy", _full = "Toys.Toy";
};

int gCalls = 0;
void countCall() { ++gCalls; }

class ToyPackage : public vos::VOSPackageInfo {
public:
    const std::string& getName() const override { return _name; }
    void loadFunctions(vos::factory::FunctionTable& table) override {
        void* memory = std::calloc(1, sizeof(vos::factory::FunctionInfo));
        auto* info = new (memory) vos::factory::FunctionInfo("count", {});
        info->setSignature(vos::factory::impl::Invoker::createSignature("", "void", nullptr));
        info->setInvoker(&vos::factory::impl::Invoker::callVoid, &countCall);
        table.addFunction(info);
    }
    bool isBuiltIn() const override { return false; }

private:
    std::string _name = "Toys";
};

ToyClass* registerToys() {
    static ToyClass* toy = [] {
        vos::VOSPackage::addPackage(new ToyPackage());
        auto* info = new ToyClass();
        vos::VOSPackage::getPackage(vos::VOSNameID("Toys"))->addClass(info);
        return info;
    }();
    return toy;
}

TEST(ClassSystem, MethodsLoadOnceAndHiddenOnesStillRun) {
    ToyClass* toy = registerToys();
    EXPECT_EQ(vos::visibleMethods("Toys.Toy"), (std::vector<std::string>{"two", "open", "quiet"}));
    EXPECT_EQ(toy->loads, 1);
    EXPECT_TRUE(vos::isCallable("Toys.Toy.hidden"));
    EXPECT_EQ(vos::invoke("Toys.Toy.hidden", 1, {}).size(), 1u);
    EXPECT_TRUE(vos::visibleMethods("Toys.Nothing").empty());
    EXPECT_EQ(toy->loads, 1);

    const int before = gCalls;
    EXPECT_TRUE(vos::isCallable("Toys.count"));
    vos::invoke("Toys.count", 0, {});
    EXPECT_EQ(gCalls, before + 1);
    EXPECT_EQ(vos::VOSNameID("same"), vos::VOSNameID(std::string("same")));
}

struct Probe {};

TEST(Errors, CarryTheirMessageAndSurviveCopies) {
    resource_core::BaseMsgID message("vos", "TooManyInputs", 3);
    message.setArgument(0, std::string("P.C.m"));
    message.setArgument(1, std::int64_t{2});
    message.setArgument(2, std::u16string(u"5"));
    const foundation::core::except::Exception<Probe> error(message);
    EXPECT_EQ(error.getErrorID(), "vos:TooManyInputs");
    EXPECT_STREQ(error.what(), "Too many input arguments: P.C.m takes 2, but 5 were given.");

    const boost::exception_ptr copy = error.cloneException();
    try {
        boost::rethrow_exception(copy);
    } catch (const foundation::core::except::IMsgIDException& caught) {
        EXPECT_EQ(caught.getErrorID(), "vos:TooManyInputs");
        EXPECT_NE(&caught.getMessageID(), &error.getMessageID());  // a deep copy
        EXPECT_EQ(resource_core::argumentText(caught.getMessageID().arguments()[1]), "2");
    }
    EXPECT_THROW(error.rethrow(), foundation::core::except::Exception<Probe>);

    // A message the catalogue does not know reads as its id and arguments.
    resource_core::BaseMsgID unknown("nowhere", "Nothing");
    unknown.setArgument(0, std::string("x"));
    EXPECT_EQ(resource_core::formatMessage(unknown), "nowhere:Nothing x");
}

}  // namespace
