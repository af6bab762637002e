#include "apps/Workspace/QuoteCards/BrokerQueueModel.h"

#include <iterator>

namespace vx_ws {

std::vector<BrokerQueueCell> MakeBrokerQueue(const std::vector<vx_md::BookLevel>& levels, int capacity)
{
    std::vector<BrokerQueueCell> cells;
    if (capacity <= 0)
        return cells;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const auto& brokers = levels[i].brokers;
        if (brokers.empty())
            continue;
        // A marker needs room for at least one of its brokers after it.
        if (static_cast<int>(cells.size()) + 2 > capacity)
            break;
        const int level = static_cast<int>(i) + 1;
        cells.push_back({level, true, 0});
        for (unsigned int broker : brokers) {
            if (static_cast<int>(cells.size()) >= capacity)
                return cells;
            cells.push_back({level, false, broker});
        }
    }
    return cells;
}

QString BrokerShortName(unsigned int broker)
{
    // Made-up firms; two syllables keep a cell narrow.
    static const char* const kFirst[] = {"华", "远", "辰", "泰", "宁", "恒", "嘉", "盛",
                                         "川", "岳", "明", "瑞", "鼎", "信", "汇", "安"};
    static const char* const kSecond[] = {"昌", "达", "丰", "和", "合", "通", "源", "誉",
                                          "隆", "海", "德", "骏", "弘", "正", "元", "晟"};
    const unsigned int first = broker % std::size(kFirst);
    const unsigned int second = (broker / std::size(kFirst)) % std::size(kSecond);
    return QString::fromUtf8(kFirst[first]) + QString::fromUtf8(kSecond[second]);
}

} // namespace vx_ws
