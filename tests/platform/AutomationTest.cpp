#include "platform/AutomationTable.h"
#include "platform/Json.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

namespace {

using kalvio::AutomationFault;
using kalvio::AutomationResult;

class Target : public CCmdTarget {
public:
    double GetMainTemp() { return 36.5; }
    bool WriteRegister(std::int16_t number, std::int32_t value) {
        written = number * 1000 + value;
        return true;
    }
    void ReadMemory(VARIANT* out) { *out = VARIANT::Long(77); }
    void Break() { throw std::runtime_error("the unit is gone"); }
    CString Name() { return name; }
    void SetName(CString value) { name = std::move(value); }
    std::int16_t Level() { return level; }
    void SetLevel(std::int16_t value) { level = value; }
    bool Locked() { return true; }

    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override {
        using namespace kalvio::automation;
        static const kalvio::DispatchTable kTable = {
            Method("HW_GetMainTemp", &Target::GetMainTemp),
            Method("HW_WriteRegister", &Target::WriteRegister),
            Method("HW_ReadMemory", &Target::ReadMemory),
            Method("HW_Break", &Target::Break),
            Property("Name", &Target::Name, &Target::SetName),
            Property("Level", &Target::Level, &Target::SetLevel),
            ReadOnly("Locked", &Target::Locked),
            Constant("LEVEL_MAX", 9),
        };
        return kTable;
    }

    std::int32_t written = 0;
    CString name = "unit";
    std::int16_t level = 3;
};

enum class How { Invoke, Get, Set };

AutomationResult Request(Target& target, How how, const CString& name,
                         const std::vector<VARIANT>& arguments) {
    switch (how) {
    case How::Get:
        return target.GetProperty(name);
    case How::Set:
        return target.SetProperty(name, arguments.at(0));
    case How::Invoke:
        break;
    }
    return target.Invoke(name, arguments);
}

TEST(Automation, AnswersWithConvertedArguments) {
    struct Case {
        How how;
        const char* name;
        std::vector<VARIANT> arguments;
        const char* json;
    };
    const Case cases[] = {
        {How::Invoke, "hw_getmaintemp", {}, "36.5"},
        {How::Invoke, "HW_WriteRegister", {VARIANT::String("2"), VARIANT::Double(3.6)}, "true"},
        {How::Set, "Level", {VARIANT::Bool(true)}, "null"},
        {How::Get, "Level", {}, "-1"},
        {How::Set, "Name", {VARIANT::Short(12)}, "null"},
        {How::Invoke, "Name", {}, "\"12\""},
        {How::Get, "Locked", {}, "true"},
        {How::Get, "LEVEL_MAX", {}, "9"},
    };
    Target target;
    for (const Case& each : cases) {
        const AutomationResult result = Request(target, each.how, each.name, each.arguments);
        EXPECT_TRUE(result.Ok()) << result.text;
        EXPECT_EQ(result.value.ToJson(), each.json) << each.name;
    }
    EXPECT_EQ(target.written, 2004);
    VARIANT out;
    EXPECT_TRUE(target.Invoke("HW_ReadMemory", std::vector{VARIANT::Reference(&out)}).Ok());
    EXPECT_EQ(out.ToText(), "77");
}

TEST(Automation, FaultsSayWhatIsWrong) {
    struct Case {
        How how;
        const char* name;
        std::vector<VARIANT> arguments;
        AutomationFault fault;
        const char* text;
    };
    const Case cases[] = {
        {How::Invoke,
         "HW_GetMainTmp",
         {},
         AutomationFault::UnknownName,
         "Unknown name \"HW_GetMainTmp\"; did you mean \"HW_GetMainTemp\"?"},
        {How::Get, "nmae", {}, AutomationFault::UnknownName, "Unknown name \"nmae\"; did you mean \"Name\"?"},
        {How::Set,
         "Something else",
         {VARIANT()},
         AutomationFault::UnknownName,
         "Unknown name \"Something else\"."},
        {How::Invoke, "", {}, AutomationFault::UnknownName, "Unknown name \"\"."},
        {How::Invoke,
         "HW_WriteRegister",
         {VARIANT::Short(1)},
         AutomationFault::WrongCount,
         "\"HW_WriteRegister\" takes 2 arguments (short, long), but 1 was given."},
        {How::Invoke,
         "HW_Break",
         {VARIANT::Short(1), VARIANT()},
         AutomationFault::WrongCount,
         "\"HW_Break\" takes 0 arguments, but 2 were given."},
        {How::Invoke,
         "HW_WriteRegister",
         {VARIANT::Long(40000), VARIANT::Long(1)},
         AutomationFault::WrongType,
         "Argument 1 of \"HW_WriteRegister\" must be of type short, but is long 40000."},
        {How::Invoke,
         "HW_ReadMemory",
         {VARIANT::String("x")},
         AutomationFault::WrongType,
         "Argument 1 of \"HW_ReadMemory\" must be of type reference, but is string \"x\"."},
        {How::Invoke,
         "HW_ReadMemory",
         {VARIANT::Reference(nullptr)},
         AutomationFault::WrongType,
         "Argument 1 of \"HW_ReadMemory\" must be of type reference, but is reference."},
        {How::Set,
         "Level",
         {VARIANT::String("high")},
         AutomationFault::WrongType,
         "\"Level\" must be of type short, but the value is string \"high\"."},
        {How::Set, "Locked", {VARIANT::Bool(false)}, AutomationFault::ReadOnly, "\"Locked\" is read-only."},
        {How::Get,
         "HW_GetMainTemp",
         {},
         AutomationFault::NotAProperty,
         "\"HW_GetMainTemp\" is a method, not a property."},
        {How::Set,
         "HW_Break",
         {VARIANT()},
         AutomationFault::NotAProperty,
         "\"HW_Break\" is a method, not a property."},
        {How::Invoke,
         "Level",
         {VARIANT::Short(1)},
         AutomationFault::NotAMethod,
         "\"Level\" is a property, not a method: it takes no arguments."},
        {How::Invoke, "HW_Break", {}, AutomationFault::Failed, "\"HW_Break\" failed: the unit is gone."},
    };
    Target target;
    for (const Case& each : cases) {
        const AutomationResult result = Request(target, each.how, each.name, each.arguments);
        EXPECT_EQ(result.fault, each.fault) << each.text;
        EXPECT_EQ(result.text, each.text);
    }
    EXPECT_EQ(target.written, 0);
    EXPECT_EQ(target.level, 3);
}

} // namespace
