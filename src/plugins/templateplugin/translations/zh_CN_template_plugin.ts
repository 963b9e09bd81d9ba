<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>TemplatePlugin</name>
    <message>
        <source>Peripheral</source>
        <translation>外设</translation>
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
        <translation>夹爪步骤</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>Device ID</source>
        <translation>设备编号</translation>
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
        <translation>等待动作完成</translation>
    </message>
    <message>
        <source>Try on gripper</source>
        <translation>在夹爪上试行</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>确认</translation>
    </message>
    <message>
        <source>Condition type is not match</source>
        <translation>条件类型不匹配</translation>
    </message>
    <message>
        <source>Condition saved.</source>
        <translation>条件已保存。</translation>
    </message>
    <message>
        <source>%1 plugin does not exist</source>
        <translation>%1 插件不存在</translation>
    </message>
    <message>
        <source>Call plugin interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</source>
        <translation>调用插件接口失败！                            
函数名称 : set_2_finger_gripper_param,                            
错误信息 : %1</translation>
    </message>
</context>
</TS>
