// Writes the pages of the control's help as Markdown, one for each member and event, and the files
// that a compiler of HTML help wants beside them: contents, index, and which page F1 opens.
//
//   marlune_help_pages MEMBERS.md FOLDER
//
// What can be called is taken from the control's own tables, what it does from the sections of
// MEMBERS.md; a member without a section, or a section without a member, is an error.
#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "control/Surface.h"

namespace marlune {
namespace {

using surface::Kind;
using surface::Type;

// Help contexts, as in marlune.idl.
constexpr int kFirstEvent = 100;

struct Page {
    std::string name;
    std::string title;
    std::string declaration;
    int context;
};

// As Visual Basic writes them.
std::string typeName(Type type) {
    switch (type) {
        case Type::boolean:
            return "Boolean";
        case Type::integer:
            return "Integer";
        case Type::number:
            return "Double";
        case Type::text:
        case Type::textReference:
            return "String";
        case Type::port:
            return "numPort";
        case Type::variant:
            return "Variant";
        case Type::none:
            break;
    }
    return {};
}

std::string listOf(const surface::Parameters& parameters) {
    std::string list;
    for (const surface::Parameter& parameter : parameters) {
        list += list.empty() ? "" : ", ";
        list += parameter.type == Type::textReference ? "ByRef " : "ByVal ";
        list += std::string(parameter.name) + " As " + typeName(parameter.type);
    }
    return "(" + list + ")";
}

Page pageOf(const surface::Member& member) {
    const std::string name(member.name);
    const std::string list = listOf(member.parameters);
    switch (member.kind) {
        case Kind::propertyGet:
            return {name, name + " property",
                    "Property Get " + name + "() As " + typeName(member.result), member.id};
        case Kind::propertyPut:
            return {name, name + " property", "Property Let " + name + list, member.id};
        case Kind::method:
            break;
    }
    return {name, name + " method", "Function " + name + list + " As " + typeName(member.result),
            member.id};
}

Page pageOf(const surface::Event& event) {
    const std::string name(event.name);
    return {name, name + " event", "Event " + name + listOf(event.parameters),
            kFirstEvent + event.id};
}

// The texts below the headings of the second level, by their headings.
std::map<std::string, std::string> readSections(const std::filesystem::path& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    std::map<std::string, std::string> sections;
    std::string* section = nullptr;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("## ")) {
            section = &sections[line.substr(3)];
        } else if (line.starts_with("# ")) {
            section = nullptr;
        } else if (section != nullptr) {
            *section += line + "\n";
        }
    }
    return sections;
}

std::ofstream create(const std::filesystem::path& path) {
    std::ofstream file(path);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    return file;
}

class Book {
public:
    explicit Book(std::filesystem::path folder) : folder_(std::move(folder)) {
        for (const surface::Member& member : surface::kMembers) {
            members_.push_back(pageOf(member));
        }
        for (const surface::Event& event : surface::kEvents) {
            events_.push_back(pageOf(event));
        }
    }

    void writePages(std::map<std::string, std::string> sections) const {
        forEachPage([&](const Page& page) {
            const auto section = sections.extract(page.name);
            if (section.empty()) {
                throw std::runtime_error("no section tells of " + page.name);
            }
            create(folder_ / (page.name + ".md")) << "# " << page.title << "\n\n```vb\n"
                                                  << page.declaration << "\n```\n\n"
                                                  << section.mapped();
        });
        if (!sections.empty()) {
            throw std::runtime_error("the control has no " + sections.begin()->first);
        }
    }

    // The page that lists all others.
    void writeOverview() const {
        std::ofstream file = create(folder_ / "index.md");
        file << "# Marlune GPS transfer control\n\n"
                "- [On a Windows form](windows.html): installing, calling, events, messages\n"
                "- [Formats](formats.html): the text lines and files\n";
        for (const auto& [heading, pages] :
             {std::pair{"Members", &members_}, {"Events", &events_}}) {
            file << "\n## " << heading << "\n\n";
            for (const Page& page : *pages) {
                file << "- [" << page.name << "](" << page.name << ".html)\n";
            }
        }
    }

    void writeProject() const {
        std::ofstream project = create(folder_ / "marlune.hhp");
        project << "[OPTIONS]\nCompatibility=1.1 or later\nCompiled file=marlune.chm\n"
                   "Contents file=marlune.hhc\nIndex file=marlune.hhk\n"
                   "Default topic=index.html\nTitle=Marlune GPS transfer control\n"
                   "Language=0x409 English (United States)\n\n[FILES]\n"
                   "index.html\nwindows.html\nformats.html\n";
        forEachPage([&](const Page& page) { project << page.name << ".html\n"; });
        project << "\n[ALIAS]\n";
        forEachPage([&](const Page& page) {
            project << "IDH_" << page.name << "=" << page.name << ".html\n";
        });
        project << "\n[MAP]\n";
        forEachPage([&](const Page& page) {
            project << "#define IDH_" << page.name << " " << page.context << "\n";
        });
    }

    void writeContents() const {
        std::ofstream file = create(folder_ / "marlune.hhc");
        file << kSitemapBegin << "<UL>\n";
        writeEntry(file, "Overview", "index");
        writeEntry(file, "On a Windows form", "windows");
        writeEntry(file, "Formats", "formats");
        for (const auto& [heading, pages] :
             {std::pair{"Members", &members_}, {"Events", &events_}}) {
            writeEntry(file, heading, "index");
            file << "<UL>\n";
            for (const Page& page : *pages) {
                writeEntry(file, page.title, page.name);
            }
            file << "</UL>\n";
        }
        file << "</UL>\n" << kSitemapEnd;
    }

    void writeIndex() const {
        std::ofstream file = create(folder_ / "marlune.hhk");
        file << kSitemapBegin << "<UL>\n";
        forEachPage([&](const Page& page) { writeEntry(file, page.name, page.name); });
        file << "</UL>\n" << kSitemapEnd;
    }

private:
    static constexpr char kSitemapBegin[] = "<HTML><HEAD></HEAD><BODY>\n";
    static constexpr char kSitemapEnd[] = "</BODY></HTML>\n";

    template <class Visit>
    void forEachPage(const Visit& visit) const {
        std::for_each(members_.begin(), members_.end(), visit);
        std::for_each(events_.begin(), events_.end(), visit);
    }

    static void writeEntry(std::ostream& file, const std::string& name, const std::string& page) {
        file << "<LI><OBJECT type=\"text/sitemap\"><param name=\"Name\" value=\"" << name
             << "\"><param name=\"Local\" value=\"" << page << ".html\"></OBJECT>\n";
    }

    std::filesystem::path folder_;
    std::vector<Page> members_;
    std::vector<Page> events_;
};

void write(const std::filesystem::path& texts, const std::filesystem::path& folder) {
    const Book book(folder);
    book.writePages(readSections(texts));
    book.writeOverview();
    book.writeProject();
    book.writeContents();
    book.writeIndex();
}

}  // namespace
}  // namespace marlune

int main(int count, char** words) {
    if (count != 3) {
        std::cerr << "marlune_help_pages MEMBERS.md FOLDER\n";
        return 2;
    }
    try {
        marlune::write(words[1], words[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << words[0] << ": " << error.what() << "\n";
        return 1;
    }
}
