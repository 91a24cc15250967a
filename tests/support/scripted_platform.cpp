#include "support/scripted_platform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace quill::tests {

ScriptedPlatform::~ScriptedPlatform() {
    for (const Step& step : script_) {
        ADD_FAILURE() << "never shown: the " << describe(step.kind) << " with \"" << step.part << "\"";
    }
}

std::string ScriptedPlatform::describe(Kind kind) {
    switch (kind) {
        case Kind::message:
            return "message";
        case Kind::question:
            return "question";
        case Kind::collision:
            return "question about a file that exists";
        case Kind::choice:
            return "choice";
        case Kind::input:
            return "input box";
        case Kind::file_request:
            return "file request";
        case Kind::colour:
            return "choice of a color";
    }
    return {};
}

void ScriptedPlatform::expect_message(std::string part, controls::Action meanwhile) {
    script_.push_back({Kind::message, std::move(part), {}, false, std::move(meanwhile)});
}

void ScriptedPlatform::expect_question(std::string part, bool yes, controls::Action meanwhile) {
    script_.push_back({Kind::question, std::move(part), {}, yes, std::move(meanwhile)});
}

void ScriptedPlatform::expect_collision(std::string part, platform::Collision answer, controls::Action meanwhile) {
    script_.push_back({Kind::collision, std::move(part), {}, false, std::move(meanwhile), answer});
}

void ScriptedPlatform::expect_choice(std::string part, std::string answer, controls::Action meanwhile) {
    script_.push_back({Kind::choice, std::move(part), std::move(answer), false, std::move(meanwhile)});
}

void ScriptedPlatform::expect_input(std::string part, std::string answer, controls::Action meanwhile) {
    script_.push_back({Kind::input, std::move(part), std::move(answer), false, std::move(meanwhile)});
}

void ScriptedPlatform::expect_file_request(std::string part, std::string answer, controls::Action meanwhile) {
    script_.push_back({Kind::file_request, std::move(part), std::move(answer), false, std::move(meanwhile)});
}

void ScriptedPlatform::expect_colour(std::optional<controls::Colour> answer) {
    script_.push_back({.kind = Kind::colour, .part = {}, .answer = {}, .meanwhile = {}, .colour = answer});
}

ScriptedPlatform::Step ScriptedPlatform::next(Kind kind, const std::string& text) {
    const bool fits =
        !script_.empty() && script_.front().kind == kind && text.find(script_.front().part) != std::string::npos;
    if (!fits) {
        ADD_FAILURE() << "unscripted " << describe(kind) << ": \"" << text << "\""
                      << (script_.empty() ? std::string(", the script is at its end")
                                          : ", next is the " + describe(script_.front().kind) + " with \"" +
                                                script_.front().part + "\"");
        return {kind, {}, {}, false, {}};
    }
    Step step = std::move(script_.front());
    script_.pop_front();
    controls::run(step.meanwhile);
    return step;
}

void ScriptedPlatform::message(const std::string& text, const std::string&) {
    messages.push_back(text);
    next(Kind::message, text);
}

bool ScriptedPlatform::ask(const platform::Question& question) {
    questions.push_back(question);
    return next(Kind::question, question.text).yes;
}

platform::Collision ScriptedPlatform::ask_about_existing(const std::string& path) {
    return next(Kind::collision, path).collision;
}

std::size_t ScriptedPlatform::choose(const platform::Choices& choices) {
    const Step step = next(Kind::choice, choices.text);
    if (step.answer.empty()) return choices.escape_answer;
    const auto answer = std::find(choices.answers.begin(), choices.answers.end(), step.answer);
    if (answer != choices.answers.end()) return static_cast<std::size_t>(answer - choices.answers.begin());
    ADD_FAILURE() << "no answer \"" << step.answer << "\" to \"" << choices.text << "\"";
    return choices.escape_answer;
}

std::string ScriptedPlatform::input(const platform::Prompt& prompt) {
    prompts.push_back(prompt);
    return next(Kind::input, prompt.text).answer;
}

std::string ScriptedPlatform::choose_file(const platform::FileRequest& request) {
    file_requests.push_back(request);
    return next(Kind::file_request, request.title).answer;
}

std::optional<controls::Colour> ScriptedPlatform::choose_colour(const controls::Colour&) {
    return next(Kind::colour, {}).colour;
}

bool ScriptedPlatform::open_with_default(const std::string& path) {
    opened.push_back(path);
    return opening_works;
}

bool ScriptedPlatform::start(const std::string& program, const std::vector<std::string>& arguments,
                             const std::string& directory) {
    started.push_back({program, arguments, directory});
    return starting_works;
}

bool ScriptedPlatform::edit_text(const std::string& path) {
    edited.push_back(path);
    return editing_works;
}

bool ScriptedPlatform::move_to_trash(const std::string& path) {
    if (!trash_works || std::remove(path.c_str()) != 0) return false;
    trashed.push_back(path);
    return true;
}

std::string ScriptedPlatform::find(const std::string& program) {
    const auto path = installed.find(program);
    return path == installed.end() ? std::string() : path->second;
}

platform::ProgramResult ScriptedPlatform::run(const std::string& path, const std::vector<std::string>& arguments,
                                              const std::function<bool()>& goes_on) {
    waited_for.push_back({path, arguments, {}});
    controls::run(while_waiting);
    if (!goes_on()) return {platform::ProgramEnd::stopped};
    if (program_results.empty()) return {};
    const platform::ProgramResult result = program_results.front();
    program_results.pop_front();
    return result;
}

std::string ScriptedPlatform::command(const std::string& command) {
    media_commands.push_back(command);
    return media_reply;
}

int ScriptedPlatform::random(int bound) {
    if (random_number) return random_number(bound);
    return static_cast<int>(generator_() % static_cast<unsigned>(bound));
}

void ScriptedPlatform::repaint(controls::Window& window) {
    ++repaints;
    if (on_repaint) on_repaint(window);
}

}  // namespace quill::tests
