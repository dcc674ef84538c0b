#include "cli/PdfArguments.h"

#include <algorithm>
#include <utility>

#include "base/LetterCase.h"

namespace melvorin {
namespace {

class Parser {
  public:
    explicit Parser(const std::vector<Text>& arguments) : arguments_(arguments) {}

    Result<PdfRequest> parse();

  private:
    // False where an option makes no sense; `cause_` says why.
    bool takeOption(const Text& argument);
    bool takeSwitch(const Text& name);
    bool takeValue(const Text& name, Text value);
    bool fail(Text cause) {
        cause_ = std::move(cause);
        return false;
    }

    const std::vector<Text>& arguments_;
    std::size_t next_ = 0;
    PdfRequest request_;
    Text cause_;
};

Text quoted(TextView text) {
    return Text(u"\"").append(text).append(u"\"");
}

bool Parser::takeSwitch(const Text& name) {
    if (name == u"--fit")
        request_.setup.fit = true;
    else if (name == u"--black")
        request_.setup.colours = false;
    else if (name == u"--diagrams")
        request_.setup.diagrams = true;
    else if (name == u"--help")
        request_.help = true;
    else
        return false;
    return true;
}

bool Parser::takeValue(const Text& name, Text value) {
    if (name == u"-o" || name == u"--output") {
        request_.output = std::move(value);
    } else if (name == u"--paper") {
        const Text paper = asciiLowerCase(value);
        if (paper != u"a4" && paper != u"letter")
            return fail(name + u" " + quoted(value) + u" is neither A4 nor letter");
        request_.setup.paper = paper == u"a4" ? kA4 : kLetter;
    } else if (name == u"--columns") {
        if (value.size() != 1 || value[0] < u'1' || value[0] > u'4')
            return fail(name + u" " + quoted(value) + u" is not a number from 1 to 4");
        request_.setup.columns = value[0] - u'0';
    } else if (name == u"--font") {
        request_.fonts.push_back(std::move(value));
    } else if (name == u"--sort") {
        request_.sortsByTitle = true;
        return value == u"title" ? true : fail(name + u" " + quoted(value) + u" is not title");
    } else if (name == u"--title" || name == u"--author") {
        (name == u"--title" ? request_.title : request_.author) = std::move(value);
    } else if (name == u"--encoding") {
        request_.encoding = encodingNamed(value);
        return request_.encoding
                   ? true
                   : fail(name + u" " + quoted(value) + u" is not known; " + knownEncodings());
    } else {
        return fail(quoted(name) + u" is not an option of this command");
    }
    return true;
}

bool Parser::takeOption(const Text& argument) {
    const std::size_t equals = argument.starts_with(u"--") ? argument.find(u'=') : Text::npos;
    const Text name = argument.substr(0, equals);
    if (equals == Text::npos && takeSwitch(name))
        return true;
    if (equals != Text::npos)
        return takeValue(name, argument.substr(equals + 1));
    if (next_ == arguments_.size())
        return fail(quoted(argument) + u" needs a value, or is not an option of this command");
    return takeValue(name, arguments_[next_++]);
}

Result<PdfRequest> Parser::parse() {
    bool optionsEnded = false;
    while (next_ < arguments_.size()) {
        const Text& argument = arguments_[next_++];
        if (optionsEnded || !argument.starts_with(u'-'))
            request_.songs.push_back(argument);
        else if (argument == u"--")
            optionsEnded = true;
        else if (!takeOption(argument))
            return Failure{cause_};
    }
    if (!request_.help && request_.songs.empty())
        return Failure{u"pdf needs songs"};
    if (!request_.help && request_.output.empty())
        return Failure{u"pdf needs -o and the file to write"};
    if (std::find(request_.songs.begin(), request_.songs.end(), request_.output) !=
        request_.songs.end())
        return Failure{quoted(request_.output) +
                       u" is one of the songs, which the PDF would replace"};
    return Result<PdfRequest>::success(std::move(request_));
}

}  // namespace

Result<PdfRequest> parsePdfArguments(const std::vector<Text>& arguments) {
    return Parser(arguments).parse();
}

}  // namespace melvorin
