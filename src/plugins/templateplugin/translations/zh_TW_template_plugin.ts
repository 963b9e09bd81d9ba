<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW">
<context>
    <name>TemplatePlugin</name>
    <message>
        <source>Peripheral</source>
        <translation>外設</translation>
    </message>
    <message>
        <source>Zanther2F</source>
        <translation>Zanther2F</translation>
    </message>
</context>
<context>
    <name>gripper_peripheral_condition</name>
    <message>
        <source>Gripper step</source>
        <translation>夾爪步驟</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>外掛</translation>
    </message>
    <message>
        <source>Device ID</source>
        <translation>裝置編號</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Force</source>
        <translation>力量</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>Wait until the move ends</source>
        <translation>等待動作完成</translation>
    </message>
    <message>
        <source>Try on gripper</source>
        <translation>在夾爪上試行</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確認</translation>
    </message>
    <message>
        <source>Condition type is not match</source>
        <translation>條件類型不符</translation>
    </message>
    <message>
        <source>Condition saved.</source>
        <translation>條件已儲存。</translation>
    </message>
    <message>
        <source>%1 plugin does not exist</source>
        <translation>%1 外掛不存在</translation>
    </message>
    <message>
        <source>Call plugin interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</source>
        <translation>呼叫外掛介面失敗！                            
函式名稱 : set_2_finger_gripper_param,                            
錯誤資訊 : %1</translation>
    </message>
</context>
</TS>
