var t = new ActiveXObject("kpTables.CTables");
Say(t.Version());
Say(t.AllTrim("ab-CD 12号"));
Say(t.CalcPrice(10, 4));
t.Speciality = "建材";
Say(t.Speciality);
t.isSQL = true;
Say(String(t.isSQL));
try {
    t["Get单据金额"]();
} catch (e) {
    Say(e.number & 0xFFFF);
}
