#pragma once

#include "Tallyfox/Engine/Store/StoreEnvironment.h"

#include <utility>
#include <vector>

namespace tallyfox::test {

/// Keeps requests until the test confirms or cancels one for the user.
class FakeHomeFolderPicker : public HomeFolderPicker {
public:
    void begin(const Request& request, Completion completion) override
    {
        requests.push_back(request);
        m_completion = std::move(completion);
    }

    void confirm(const std::filesystem::path& folder)
    {
        std::exchange(m_completion, {})(folder);
    }

    void cancel()
    {
        std::exchange(m_completion, {})(std::nullopt);
    }

    std::vector<Request> requests;

private:
    Completion m_completion;
};

} // namespace tallyfox::test
