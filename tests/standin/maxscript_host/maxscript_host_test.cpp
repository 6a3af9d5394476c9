// The interface for embedders of the script language: native functions, host objects, globals, values.
#include "tests/standin/maxscript/maxscript_fixture.h"

using script_fixture::outcome_of;
using namespace maxscript;

namespace {

struct Camera : HostObject {
    explicit Camera(std::shared_ptr<const HostClass> its_class) : class_(std::move(its_class)) {}
    std::shared_ptr<const HostClass> host_class() const override { return class_; }
    bool has_property(const Text& name) const override { return name == u"name" || name == u"fov"; }
    bool get_property(const Text& property, Value& value) override {
        if (property == u"fov") {
            value = Value::real(fov);
            return true;
        }
        value = Value::string(u"Cam");
        return property == u"name";
    }
    bool set_property(const Text& property, const Value& value) override {
        fov = property == u"fov" ? value.as_real() : fov;
        return property == u"fov";
    }
    bool call_method(const Text& method, Arguments& arguments, Value& result) override {
        if (method != u"add") {
            return false;
        }
        result = Value::integer(arguments.integer(0) + arguments.integer(1));
        return true;
    }
    bool elements(std::vector<Value>& items) const override {
        items = {Value::integer(1), Value::integer(2)};
        return true;
    }
    Text text() const override { return u"$Camera:Cam"; }

    float fov = 45;
    std::shared_ptr<const HostClass> class_;
};

class MaxscriptHost : public testing::Test {
protected:
    MaxscriptHost() : interpreter_(Environment()) {
        super_class_->name = u"camera";
        class_->name = u"Freecamera";
        class_->super = super_class_;
        camera_ = std::make_shared<Camera>(class_);
        interpreter_.globals().add_constant(u"camera", Value::of_class(super_class_));
        interpreter_.globals().add_constant(u"Freecamera", Value::of_class(class_));
        interpreter_.globals().add_constant(u"cam", Value::object(camera_));
    }
    std::string run(const std::string& source) { return outcome_of(interpreter_, source); }

    Interpreter interpreter_;
    std::shared_ptr<HostClass> super_class_ = std::make_shared<HostClass>();
    std::shared_ptr<HostClass> class_ = std::make_shared<HostClass>();
    std::shared_ptr<Camera> camera_;
};

TEST_F(MaxscriptHost, ObjectsHavePropertiesMethodsAndElements) {
    EXPECT_EQ(run("cam.name"), "\"Cam\"");
    EXPECT_EQ(run("CAM.FOV"), "45.0");
    EXPECT_EQ(run("cam.fov = 30.5; cam.fov"), "30.5");
    EXPECT_EQ(run("cam.fov *= 2.0"), "61.0");
    EXPECT_EQ(run("cam.add 2 3"), "5");
    EXPECT_EQ(run("for x in cam collect x"), "#(1, 2)");
    EXPECT_EQ(run("cam.count"), "2");
    EXPECT_EQ(run("#(cam)"), "#($Camera:Cam)");
    EXPECT_EQ(run("findItem #(1, cam) cam"), "2");
    EXPECT_EQ(run("cam == cam"), "true");
    EXPECT_EQ(run("isProperty cam #fov"), "true");
    EXPECT_EQ(run("isProperty cam #none"), "false");
    EXPECT_EQ(run("getProperty cam #fov == cam.fov"), "true");
    EXPECT_EQ(run("cam.none"), "1,4 Unknown property: \"none\" in $Camera:Cam");
    EXPECT_EQ(run("cam.name = 2"), "1,4 Unknown property: \"name\" in $Camera:Cam");
    EXPECT_EQ(run("cam.nothing()"), "1,4 Unknown property: \"nothing\" in $Camera:Cam");
    EXPECT_EQ(run("cam()"), "1,1 Type error: Call needs function or class, got: $Camera:Cam");
}

TEST_F(MaxscriptHost, ObjectsAnswerTheirClassAndSuperClass) {
    EXPECT_EQ(run("classOf cam"), "Freecamera");
    EXPECT_EQ(run("superClassOf cam"), "camera");
    EXPECT_EQ(run("superClassOf cam == camera"), "true");
    EXPECT_EQ(run("superClassOf Freecamera"), "camera");
    EXPECT_EQ(run("(classOf cam) as string"), "\"Freecamera\"");
    EXPECT_EQ(run("matchPattern ((classOf cam) as string) pattern:\"free*\""), "true");
    EXPECT_EQ(run("Freecamera()"), "1,1 Type error: Call needs function or class, got: Freecamera");
}

TEST_F(MaxscriptHost, NativeFunctionsCheckTheirArguments) {
    interpreter_.globals().add_function(u"describe", 1, 2, {u"pattern", u"flag"}, [](Arguments& a) {
        return Value::string(a.text(0) + u"/" + text_from_number(static_cast<std::int64_t>(a.count())) +
                             u"/" + a.keyword_text(u"pattern", u"-") + u"/" +
                             (a.keyword_boolean(u"flag", false) ? u"y" : u"n"));
    });
    EXPECT_EQ(run("describe \"a\""), "\"a/1/-/n\"");
    EXPECT_EQ(run("describe \"a\" 2 PATTERN:\"x\" flag:on"), "\"a/2/x/y\"");
    EXPECT_EQ(run("describe()"), "1,1 Argument count error: describe wanted 1, got 0");
    EXPECT_EQ(run("describe 1 2 3"), "1,1 Argument count error: describe wanted 2, got 3");
    EXPECT_EQ(run("describe 1"), "1,1 Unable to convert: 1 to type: String");
    EXPECT_EQ(run("describe \"a\" flag:2"), "1,1 Unable to convert: 2 to type: Boolean");
    EXPECT_EQ(run("describe \"a\" other:2"), "1,1 Argument error: describe has no keyword parameter other:");
    EXPECT_EQ(run("try (describe 1) catch (#caught)"), "#caught");
}

TEST_F(MaxscriptHost, InterfacesFillReferencesAndCallBack) {
    auto files = std::make_shared<HostInterface>(u"ATSOps");
    files->add(u"GetFiles", 1, 1, {}, [](Arguments& a) {
        a.set_reference(0, Value::array({Value::string(u"a"), Value::string(u"b")}));
        return Value::integer(2);
    });
    int reads = 0;
    files->add_property(u"visible", [&] { return Value::integer(++reads); });
    interpreter_.globals().add_constant(u"ATSOps", Value::object(files));
    interpreter_.globals().add_function(u"enumerate", 1, 2, {}, [](Arguments& a) {
        for (const char16_t* file : {u"x", u"y"}) {
            a.interpreter().call(a[0], {Value::string(file), a[1]});
        }
        return Value::ok();
    });
    EXPECT_EQ(run("list = #(); ATSOps.GetFiles &list; list"), "#(\"a\", \"b\")");
    EXPECT_EQ(run("(ATSOps.getFiles &fresh; fresh)"), "#(\"a\", \"b\")"); // not declared before
    EXPECT_EQ(run("ATSOps.GetFiles 3"), "1,7 Type error: GetFiles needs a by-reference argument (&variable)");
    EXPECT_EQ(run("ATSOps.GetFiles &mod"), "1,18 Compile error: Cannot assign to read-only variable: mod");
    EXPECT_EQ(run("ATSOps.visible + ATSOps.visible"), "3");
    EXPECT_EQ(run("ATSOps.visible = 3"), "1,7 Unknown property: \"visible\" in ATSOps");
    EXPECT_EQ(run("a = #(); fn add f to_list = append to_list f; enumerate add a; a"), "#(\"x\", \"y\")");
    EXPECT_EQ(run("fn few f = 1; enumerate few 1"), "1,15 Argument count error: few wanted 1, got 2");
    EXPECT_EQ(run("fn fails f g = throw \"in\"; try (enumerate fails 1) catch (getCurrentException())"),
              "\"-- Runtime error: in\"");
}

TEST_F(MaxscriptHost, HostVariablesAreReadAndSetThroughTheEmbedder) {
    Text output = u"a.png";
    interpreter_.globals().add_variable(
        u"rendOutputFilename", [&] { return Value::string(output); },
        [&](const Value& value) { output = interpreter_.as_string(value); });
    interpreter_.globals().add_variable(u"maxFileName", [] { return Value::string(u"s.max"); });
    EXPECT_EQ(run("rendoutputfilename"), "\"a.png\"");
    EXPECT_EQ(run("rendOutputFilename = \"b.png\"; rendOutputFilename"), "\"b.png\"");
    EXPECT_EQ(output, u"b.png");
    EXPECT_EQ(run("maxFileName = \"x\""),
              "1,1 Compile error: Cannot assign to read-only variable: maxFileName");
}

TEST_F(MaxscriptHost, GlobalsAreReachable) {
    run("Zed = 1; global alpha; global Keep = \"k\"; (local hidden = 2); fn func = 1");
    Globals& globals = interpreter_.globals();
    globals.set_persistent(u"keep", true);
    EXPECT_TRUE(globals.is_global(u"ZED"));
    EXPECT_FALSE(globals.is_global(u"hidden"));
    EXPECT_EQ(globals.names(Globals::Which::of_scripts),
              (std::vector<Text>{u"alpha", u"func", u"Keep", u"Zed"}));
    EXPECT_EQ(globals.persistent_names(), (std::vector<Text>{u"Keep"}));
    globals.set_persistent(u"keep", false);
    globals.set_persistent(u"never_declared", false);
    EXPECT_FALSE(globals.is_global(u"never_declared"));
    EXPECT_TRUE(globals.persistent_names().empty());
    EXPECT_EQ(run("Keep"), "\"k\""); // the value stays
    EXPECT_TRUE(globals.set(u"zed", Value::integer(7)));
    EXPECT_EQ(run("Zed"), "7");
    EXPECT_FALSE(globals.set(u"mod", Value::integer(7)));
    EXPECT_FALSE(globals.set(u"nothing", Value::integer(7)));
    EXPECT_TRUE(globals.remove(u"Zed"));
    EXPECT_FALSE(globals.remove(u"Zed"));
    EXPECT_EQ(run("Zed"), "1,1 undeclared name: Zed");
}

TEST_F(MaxscriptHost, NativeCodePrintsCallsAndCastsValues) {
    const Value list = Value::array({Value::integer(1), Value::name(u"Abc"), Value()});
    EXPECT_EQ(interpreter_.printed(list), u"#(1, #Abc, undefined)");
    EXPECT_EQ(interpreter_.as_string(Value::string(u"x")), u"x");
    EXPECT_EQ(interpreter_
                  .call(interpreter_.run(u"fn plus a b = a + b", u""), {Value::integer(2), Value::integer(3)})
                  .as_integer(),
              5);
    EXPECT_EQ(Value::object(camera_).object_as<Camera>(), camera_);
    EXPECT_EQ(list.object_as<Camera>(), nullptr);
}

TEST_F(MaxscriptHost, CheckDoesNotChangeTheGlobals) {
    EXPECT_TRUE(interpreter_.check("global fresh = 1\nfn fresh_function = fresh", u"a.ms").empty());
    EXPECT_FALSE(interpreter_.globals().is_global(u"fresh"));
    EXPECT_EQ(interpreter_.check("cam.fov + unknown_name", u"a.ms").size(), 1u);
}

TEST(MaxscriptText, ConvertsWideTextAndComparesWithoutCase) {
    EXPECT_EQ(text_from_wide(wide_from_text(u"\u4E2D\U0001F600")), u"\u4E2D\U0001F600");
    EXPECT_TRUE(equal_folded(u"\u0416a", u"\u0436A"));
    EXPECT_FALSE(equal_folded(u"a", u"ab"));
    EXPECT_EQ(lower_unit(0x178), 0x178); // no pair in these tables
}

} // namespace
