项目ID is what the list of a month's projects calls pjID.
-- The lines' index on BillID has the warehouse too, as the bill list adds up a bill's lines warehouse by warehouse.
-- The headers' index on dpID alone brings a warehouse's bills in the order of BillID, in which the bill list groups them