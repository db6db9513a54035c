#pragma once

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "KZDXPage.h"

// The page of files in memory; fails the test where there is none.
inline KZDXPage pageOf(std::map<std::string, std::string> files,
                       const KZDXPageSubject& subject = {"House.kdzx", "test"}) {
    std::string failure;
    const auto bundle = KZDXFilesInMemory(std::move(files));
    auto page = KZDXPageOf(*bundle, subject, failure);
    EXPECT_TRUE(page) << failure;
    return page ? std::move(*page) : KZDXPage();
}

// What stands in a page between two texts.
inline std::string between(const std::string& html, const std::string& start, const std::string& end) {
    const auto from = html.find(start);
    const auto to = from == std::string::npos ? from : html.find(end, from + start.size());
    EXPECT_NE(to, std::string::npos) << start;
    return to == std::string::npos ? std::string() : html.substr(from + start.size(), to - from - start.size());
}

// The data of a page.
inline nlohmann::json dataOf(const KZDXPage& page) {
    return nlohmann::json::parse(between(page.html, "id=document>", "</script>"));
}
