#include "bench/measurements.h"

namespace tarvo_bench {

std::string sample_analysis(int references, int cameras) {
    std::string text = R"({"name":"C:\\scenes\\big.max","version":"2019","app_version":"2019","is_region":)"
                       R"("false","image_width":"1920","image_height":"1080","start_frame":"0",)"
                       R"("end_frame":"0","image_format":"jpg","reference_file":[)";
    for (int number = 0; number < references; ++number) {
        text += (number == 0 ? "" : ",");
        text += R"({"path":"D:\\projects\\textures\\wall)" + std::to_string(number) + R"(\\diffuse.png"})";
    }
    text += R"(],"cameras":[)";
    for (int number = 0; number < cameras; ++number) {
        text += (number == 0 ? "" : ",");
        text += R"({"name":"PhysCamera)" + std::to_string(number) + R"("})";
    }
    return text + "]}";
}

} // namespace tarvo_bench
