// floor: the least that any importer with these libraries must do for a plan, as a yardstick. Parses the plan in place
// with text embedded in its element, then builds and writes, atomically, documents of given sizes.
//
// Usage: floor <plan.xml> <output folder> <size of document in bytes>...
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <pugixml.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<char> contentOf(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    if (file < 0 || fstat(file, &status) != 0) {
        throw std::runtime_error(fmt::format("cannot read {}", path));
    }
    std::vector<char> content(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (done < content.size()) {
        const auto count = read(file, content.data() + done, content.size() - done);
        if (count <= 0) {
            throw std::runtime_error(fmt::format("cannot read {}", path));
        }
        done += static_cast<std::size_t>(count);
    }
    close(file);
    return content;
}

class FileWriter final : public pugi::xml_writer {
public:
    explicit FileWriter(std::FILE* file) : _file(file) {}
    void write(const void* data, std::size_t size) override { std::fwrite(data, 1, size, _file); }

private:
    std::FILE* _file;
};

void addChild(pugi::xml_node parent, const char* name, const std::string& text) {
    parent.append_child(name).append_child(pugi::node_pcdata).set_value(text.c_str());
}

// A scenario of about that many bytes, made of tasks like those of an import.
void buildScenario(pugi::xml_document& document, std::size_t size) {
    constexpr std::size_t bytesPerTask = 613;  // of one task as written below
    auto scenario = document.append_child("scenario");
    scenario.append_attribute("xmlns") = "urn:kadenza:document:2";
    for (std::size_t task = 0; task < size / bytesPerTask; ++task) {
        auto element = scenario.append_child("task");
        element.append_attribute("id") = fmt::format("t{:07}", task).c_str();
        addChild(element, "title", fmt::format("Task {:07} of the plan", task));
        addChild(element, "type", "task");
        addChild(element, "schedule-type", "asap");
        addChild(element, "priority", "500");
        addChild(element, "effort", "28800");
        addChild(element, "completion-percentage", "0.50");
        addChild(element, "effort-done", "14400");
        addChild(element, "recalculate", "duration");
        addChild(element, "static-cost", "0.000000");
        addChild(element, "start-date", "2012-01-02T08:00:00+01:00");
        addChild(element, "end-date", "2012-01-04T17:00:00+01:00");
        auto link = element.append_child("prerequisite-task");
        link.append_attribute("idref") = "t0000001";
        link.append_attribute("kind") = "FS";
        element.append_child("assignment").append_attribute("idref") = "r1";
    }
}

void writeAtomically(const pugi::xml_document& document, const std::string& path) {
    const auto temporary = path + ".tmp";
    std::FILE* const file = std::fopen(temporary.c_str(), "wb");
    if (file == nullptr) {
        throw std::runtime_error(fmt::format("cannot write {}", temporary));
    }
    FileWriter writer(file);
    document.save(writer, "    ");
    std::fflush(file);
    fsync(fileno(file));
    std::fclose(file);
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        throw std::runtime_error(fmt::format("cannot write {}", path));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 3) {
        fmt::print(stderr, "Usage: floor <plan.xml> <output folder> <size in bytes>...\n");
        return 1;
    }
    auto content = contentOf(arguments[1]);
    pugi::xml_document plan;
    const auto parsed =
        plan.load_buffer_inplace(content.data(), content.size(), pugi::parse_default | pugi::parse_embed_pcdata);
    if (!parsed) {
        fmt::print(stderr, "floor: {}\n", parsed.description());
        return 1;
    }
    for (std::size_t i = 3; i < arguments.size(); ++i) {
        const std::string_view text = arguments[i];
        std::size_t size = 0;
        std::from_chars(text.data(), text.data() + text.size(), size);
        pugi::xml_document scenario;
        buildScenario(scenario, size);
        writeAtomically(scenario, fmt::format("{}/floor-{}.xml", arguments[2], i - 2));
    }
    return 0;
}
