#include <lanecfg/lane_cfg_ip_mgr.h>

#include <iostream>
#include <string>

int main(int, char** arguments) {
    using sable_lanecfg::lane_cfg_ip_mgr;
    const std::string data = arguments[1];
    const std::string database = data + "/SXA/";
    lane_cfg_ip_mgr::initilizeData("quad", "SXA", "live", database + "parameters.json",
                                   data + "/requests/sxa_basic.json", database + "registers.json",
                                   database + "device.json");
    const auto attributes = lane_cfg_ip_mgr::getAttributes("quad", "SXA", "live");
    lane_cfg_ip_mgr::releaseData("quad");
    std::cout << attributes.size() << " register words\n";
    return attributes.empty() ? 1 : 0;
}
