// A template: its scenario, a zero byte, its table of contents. An empty one of the two stands for the delivered one.
// The plan has a baseline and a custom field, so that all places of the table of contents are asked for.

#include "BundleImport.h"
#include "FuzzWorld.h"

namespace {

constexpr std::string_view Plan =
    "<Project xmlns=\"http://schemas.microsoft.com/project\"><SaveVersion>14</SaveVersion><Title>House</Title>"
    "<ScheduleFromStart>1</ScheduleFromStart><StartDate>2012-01-09T08:00:00</StartDate>"
    "<CurrencySymbol>kr</CurrencySymbol><CurrencyDigits>2</CurrencyDigits><DurationFormat>7</DurationFormat>"
    "<MinutesPerDay>450</MinutesPerDay><MinutesPerWeek>2250</MinutesPerWeek><DaysPerMonth>21</DaysPerMonth>"
    "<WorkFormat>2</WorkFormat>"
    "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName><CFType>0</CFType>"
    "<Alias>Region</Alias></ExtendedAttribute></ExtendedAttributes>"
    "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>"
    "<Tasks><Task><UID>7</UID><Name>Dig</Name><OutlineLevel>1</OutlineLevel><Start>2012-01-09T08:00:00</Start>"
    "<Duration>PT8H0M0S</Duration><ExtendedAttribute><FieldID>1</FieldID><Value>North</Value></ExtendedAttribute>"
    "<Baseline><Number>1</Number><Duration>PT16H0M0S</Duration></Baseline></Task></Tasks>"
    "<Resources><Resource><UID>3</UID><Name>Anna</Name><Type>1</Type></Resource></Resources>"
    "<Assignments><Assignment><UID>1</UID><TaskUID>7</TaskUID><ResourceUID>3</ResourceUID></Assignment></Assignments>"
    "</Project>";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    InputReader reader(textOf(bytes, size));
    const auto actual = reader.upTo('\0');
    auto input = emptyTemplate();
    input.plan = Plan;
    if (!actual.empty()) {
        input.actual = actual;
    }
    if (!reader.rest().empty()) {
        input.toc = reader.rest();
    }
    importIntoBundle(input);
    return 0;
}
