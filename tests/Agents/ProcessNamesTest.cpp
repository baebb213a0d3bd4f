#include "Agents/AgentModels.h"
#include "Agents/ProcessScanner.h"
#include "Support/Text.h"

#include <gtest/gtest.h>

namespace kippo {

TEST(ProcessNames, ClassifiesACommand) {
    const std::vector<std::string> watched{"Goose", "my-agent"};
    using enum AgentKind;
    const std::vector<std::pair<std::optional<AgentKind>, std::vector<std::string_view>>> commands{
        {claude,
         {"claude", "/home/dev/.local/bin/Claude --continue",
          "node /usr/lib/node_modules/@anthropic-ai/claude-code/cli.js",
          "/Applications/Claude.app/Contents/Resources/claude --flag"}},
        {codex,
         {"node /home/dev/.npm-global/bin/codex", "/x/@openai/codex-linux-x64/vendor/bin/codex exec hello",
          "/Applications/Codex.app/Contents/Resources/codex app-server"}},
        {gemini,
         {"node /home/dev/bin/gemini -p hello",
          "node --max-old-space-size=1 /x/node_modules/@google/gemini-cli/dist/index.js"}},
        {std::nullopt,
         {"/usr/bin/node --max-old-space-size=12052 /home/dev/bin/gemini", "node goose",
          "/Applications/Claude.app/Contents/MacOS/Claude --flag", "/Applications/Foo.app/Contents/node /x/bin/codex",
          "/home/dev/claude/server --port 1", "claude-helper", "", "   "}},
        {cursor, {"cursor-agent"}},
        {opencode, {"opencode run hello"}},
        {aider, {"python /home/dev/venv/bin/aider --model x", "python -X dev /home/dev/venv/bin/aider"}},
        {custom, {"goose run", "/opt/my-agent"}}};
    for (const auto& [kind, ofKind] : commands) {
        for (const auto command : ofKind) {
            EXPECT_EQ(classify(command, watched), kind) << command;
        }
    }
    EXPECT_EQ(classify("goose", {}), std::nullopt);
    EXPECT_EQ(classify("", {""}), std::nullopt);
}

TEST(ProcessNames, TellsSessionsFromWhatOnlyNamesAnAgent) {
    constexpr std::string_view sessions = // one command between each two bars
        R"(claude|claude -p --output-format text -- List the files here|claude update the readme|)"
        R"(claude mcp is broken, fix it|claude --strict-mcp-config --mcp-config x.json|)"
        R"(/home/dev/.vscode/extensions/anthropic.claude-code/native-binary/claude --output-format stream-json|)"
        R"(node /home/dev/.npm-global/bin/codex|codex -m gpt-5 resume --last|)"
        R"(node --no-warnings=DEP0040 /usr/local/bin/gemini|node -r dotenv/config /home/dev/bin/gemini|)"
        R"(npm exec @openai/codex@latest|npx -y @anthropic-ai/claude-code|npx -p @openai/codex codex|)"
        R"(bun /home/dev/.bun/bin/codex|deno run -A npm:@google/gemini-cli|uv tool run aider|)"
        R"(uvx --python 3.12 aider|python -m aider --model x|)"
        R"(/home/dev/venv/bin/python3.11 /home/dev/venv/bin/aider|opencode run hello|cursor-agent --resume 1)";
    for (const auto command : Text::split(sessions, '|')) {
        EXPECT_TRUE(ProcessScanner::isSession(command)) << command;
    }
    constexpr std::string_view others =
        R"(codex app-server --listen unix:// --managed-daemon|)"
        R"(/home/dev/.codex/packages/releases/1/bin/codex app-server daemon pid-update-loop|)"
        R"(codex -c model=x app-server|node /home/dev/bin/codex mcp-server|codex login|claude mcp serve|)"
        R"(claude update|claude --claude-in-chrome-mcp|claude --chrome-native-host|)"
        R"(opencode serve --port 4096|)"
        R"(cursor-agent /home/dev/.local/share/cursor-agent/versions/1/index.js worker-server|)"
        R"(tmux new -s x claude|tmux claude|timeout 55 claude|sudo claude|nohup codex exec hello|vim claude|)"
        R"(less /home/dev/claude|grep @openai/codex -r .|)"
        R"(bash -c node /x/node_modules/@openai/codex/bin/codex.js|/bin/sh /home/dev/bin/codex|)"
        R"(node -e require('@openai/codex')|python3 -c print() /home/dev/bin/aider|)"
        R"(npm install -g @anthropic-ai/claude-code|bun add @openai/codex|)"
        R"(node /x/node_modules/@openai/codex-sdk/server.js|)"
        R"(node /x/@google/gemini-cli/node_modules/tool/serve.js|node /home/dev/claude/server.js|)"
        R"(node /srv/bin/aider-web/server.js|node)";
    for (const auto command : Text::split(others, '|')) {
        EXPECT_FALSE(ProcessScanner::isSession(command)) << command;
    }
    EXPECT_FALSE(ProcessScanner::isSession(""));
}

TEST(ProcessNames, NamesAProcessForPeople) {
    for (const auto& [command, name] : {
             std::pair{"node /home/dev/app/node_modules/.bin/next dev --port 3000", "next dev"},
             {"node --inspect /home/dev/app/server.js --watch", "server.js"},
             {"/usr/bin/python3 -m http.server 8000", "http.server"},
             {"python manage.py runserver", "manage.py runserver"},
             {"node", "node"},
             {"node --version", "node"},
             {"python3 -m", "python3"},
             {"pnpm --silent dev", "pnpm dev"},
             {"/usr/bin/npm", "npm"},
             {"/opt/tool/esbuild --serve", "esbuild"},
             {"", ""},
             // 28 characters stay, 29 are cut; an accent is part of its letter.
             {"node 123456789012345678901234567.js", "123456789012345678901234567…"},
             {"node 1234567890123456789012345.js", "1234567890123456789012345.js"},
             {"node 12345678901234567890123456.js", "12345678901234567890123456.…"},
             {"node e\u030112345678901234567890123456789", "e\u030112345678901234567890123456…"},
         }) {
        EXPECT_EQ(ProcInfo{.command = command}.friendlyName(), name) << command;
    }
    EXPECT_EQ(ProcInfo{.command = "/usr/bin/Node x"}.executable(), "Node");
}

TEST(ProcessNames, KnowsDevelopmentTools) {
    for (const char* command : {"node x", "/usr/bin/Python3 -m http.server", "next-server (v15)", "yarn dev",
                                "/opt/Chrome for Testing/chrome", "chrome --headless", "sh -c playwright test",
                                "/home/dev/bin/github-MCP-server stdio"}) {
        EXPECT_TRUE(ProcInfo{.command = command}.isDevTool()) << command;
    }
    for (const char* command : {"firefox", "python3.11 x", "nodes", "/home/dev/node/app", "", "bash"}) {
        EXPECT_FALSE(ProcInfo{.command = command}.isDevTool()) << command;
    }
}

} // namespace kippo
