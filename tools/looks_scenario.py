#!/usr/bin/env python3
"""looks_scenario.py LANGUAGE: the scenario that tools/looks.sh plays, on standard output."""
import json
import sys

COUNTS = (0, 1, 5, 1000)
LONG_NAMES = {
    "en": ["Camera_Living_Room_Evening_{0:04}_with_a_long_name_as_artists_give_them", "Cam:{0}", "Lobby {0}"],
    "zh": ["客厅傍晚全景摄影机_{0:04}_美术师常用的较长名称", "摄影机:{0}", "大堂 {0}"],
}
LONG_PATHS = {
    "en": "D:\\Projects\\2019\\Riverside tower\\textures\\wood and stone\\oak_planks_diffuse_8k_{0}.tif",
    "zh": "D:\\项目\\二〇一九年\\河滨大厦\\贴图\\木材与石材\\橡木地板漫反射贴图_八千像素_{0}.tif",
}


def scene(language, count):
    cameras = [LONG_NAMES[language][i % 3].format(i) for i in range(count)]
    return {"literal": {
        "file_name": "Riverside tower, lobby in the evening.max" if language == "en" else "河滨大厦_大堂傍晚.max",
        "cameras": cameras, "width": 7680, "height": 4320, "start_frame": 101, "end_frame": 240,
        "image_format": "exr", "is_region": True,
        "missing": [LONG_PATHS[language].format(i) for i in range(1, 4)],
    }}


def steps_for(language, count):
    analysis = {"merge": {
        "errors": {"error_code": [{"code": "107"}]},
        "corona_setting": {"pass_limit": "0", "time_limit": "30", "noise_level_limit": "0"},
        "same_file": [{"path": LONG_PATHS[language].format("copy")}],
    }}
    steps = [{"change_scene": {"scene": scene(language, count), "analysis": analysis}},
             {"menu": {"command": 1497}}]
    if count > 1:
        steps += [{"check": {"rows": [0, 2]}}, {"select": {"rows": [1, 2]}}]
    steps.append({"screenshot": {"name": f"main-{count:04}.png", "of": "main"}})
    if count == 5:
        steps += [{"click": {"control": 1013}}, {"screenshot": {"name": "edit.png", "of": "edit"}}, {"close": {}}]
    return steps + [{"close": {}}]


def main():
    language = sys.argv[1]
    steps = [step for count in COUNTS for step in steps_for(language, count)]
    scenario = {"description": "Pictures to look at.", "language": language, "scene": scene(language, 1),
                "answers": {"59": "yes"}, "steps": steps}
    json.dump(scenario, sys.stdout, ensure_ascii=False)


if __name__ == "__main__":
    main()
