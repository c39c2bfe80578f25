#include "support/compressed_content.h"
#include "support/temporary_directory.h"

#include <lanecfg/host/strmio_iostreams.h>

#include <boost/iostreams/filter/counter.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <exception>
#include <string>

using lanecfg_test::gzipped;
using lanecfg_test::incompressible;
using lanecfg_test::TemporaryDirectory;
using strmio::iostreams::xp_autodetect;

namespace {

using InputStream = strmio::iostreams::filtering_stream<boost::iostreams::input>;

class FilteringStream : public testing::Test {
  protected:
    /// Fills the stream with a file that holds `stored`.
    void open(const std::string& stored) {
        stream_.push(xp_autodetect(directory_.write("stored", stored)));
    }

    TemporaryDirectory directory_;
    InputStream stream_;
};

TEST_F(FilteringStream, GivesLinesOfAPlainFile) {
    open("first\nsecond\n");
    std::string line;
    ASSERT_TRUE(std::getline(stream_, line));
    EXPECT_EQ(line, "first");
    ASSERT_TRUE(std::getline(stream_, line));
    EXPECT_EQ(line, "second");
    EXPECT_FALSE(std::getline(stream_, line));
}

TEST_F(FilteringStream, FeedsTheJsonParser) {
    open(gzipped("{\"a\": {\"b\": 7}}"));
    boost::property_tree::ptree tree;
    boost::property_tree::read_json(stream_, tree);
    EXPECT_EQ(tree.get<std::string>("a.b"), "7");
}

TEST_F(FilteringStream, LetsTheJsonParserSeeThatTheContentIsDamaged) {
    const std::string stored = gzipped("{\"a\": 1}");
    open(stored.substr(0, stored.size() - 1));
    boost::property_tree::ptree tree;
    EXPECT_THROW(boost::property_tree::read_json(stream_, tree), std::exception);
}

TEST_F(FilteringStream, ThrowsInsteadOfEndingSilentlyWhenTheContentIsDamaged) {
    const std::string stored = gzipped(incompressible(200000, 4));
    open(stored.substr(0, 100000));
    const auto readToTheEnd = [this] {
        std::string word;
        while (stream_ >> word) {
        }
    };
    EXPECT_THROW(readToTheEnd(), std::exception);
}

TEST_F(FilteringStream, TakesFiltersBeforeTheSource) {
    stream_.push(boost::iostreams::counter());
    open("first\nsecond\n");
    std::string word;
    while (stream_ >> word) {
    }
    EXPECT_EQ(stream_.component<boost::iostreams::counter>(0)->lines(), 2);
    EXPECT_EQ(stream_.component<boost::iostreams::counter>(0)->characters(), 13);
}

}  // namespace
